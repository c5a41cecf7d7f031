// SPDX-License-Identifier: MIT
// What opens above the application to have something selected: lists, and boxes with fields. Open
// ones form a stack, of which the top one is heard; it also draws.
#pragma once

#include <memory>

#include "kelvane/canvas.h"
#include "modal/takeover.h"
#include "selectors/surroundings.h"

namespace selectors {

enum class Turning { stays, with_device };

class Screen {
  public:
    explicit Screen(Turning turning) : turning_(turning) {}
    virtual ~Screen() = default;
    Screen(const Screen &) = delete;
    Screen &operator=(const Screen &) = delete;

    // Finds the place for the screen as it is held now: what it covers.
    virtual irect lay_out() = 0;
    // Draws all of it on the screen.
    virtual void draw() = 0;
    // Takes an event. It may be closed meanwhile, but stays until this returns.
    virtual bool handle(int type, int par1, int par2) = 0;

    // Draws and shows all of it, now or when nothing is above it any more.
    void show();
    // Whether it has the input and is shown as it is laid out: a part of it may be drawn alone.
    bool is_current() const;
    bool is_open() const;
    // Whether CloseSelector() closes it.
    virtual bool is_selector() const { return true; }
    int number() const { return number_; }

  private:
    friend int open(const std::shared_ptr<Screen> &);
    friend void close_top();
    friend bool dispatch(Screen &, int, int, int);

    bool is_on_top() const;
    bool is_outdated() const { return laid_out_for_ != Surroundings(); }
    bool is_turned() const { return laid_out_for_.orientation != GetOrientation(); }
    void place();
    void move();
    void update() const;

    modal::Takeover taken_;
    irect covered_{};
    Turning turning_;
    int number_ = 0;
    Surroundings laid_out_for_;
    bool is_stale_ = false; // it changed while it was covered
};

// Opens it above all others. Returns its number; 0 without a screen and above seven others.
int open(const std::shared_ptr<Screen> &screen);
// The open one of a number, or null.
std::shared_ptr<Screen> find(int number);
// Closes a screen and all that are above it. Nobody is told.
void close_with_above(int number);
// Takes everything away as the screen of the device closes.
void reset();

} // namespace selectors
