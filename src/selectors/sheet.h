// SPDX-License-Identifier: MIT
// A box at the foot of the screen: a title, what is asked for, and the buttons OK and Cancel.
#pragma once

#include <string>

#include "kelvane/gestures.h"
#include "lists/look.h"
#include "selectors/screen.h"

namespace selectors {

class Sheet : public Screen {
  public:
    irect lay_out() final;
    void draw() final;
    bool handle(int type, int par1, int par2) final;

  protected:
    // `title` is a key of the language.
    explicit Sheet(const char *title) : Screen(Turning::stays), title_(title) {}

    // What stands between title and buttons: how high it is, where it is, and what it looks like
    // on white.
    virtual int body_h() const = 0;
    virtual void place_body(const irect &body) = 0;
    virtual void draw_body() const = 0;
    // Answers to a key, and to a finger that was lifted where it went down.
    virtual bool key(int code, int repeats) = 0;
    virtual void tap(int x, int y) = 0;
    // Answers to a finger that rests. Nothing, but for what is faster then.
    virtual void hold(int x, int y);
    // A finger is on the body, or has left it. Nothing, but for what follows a finger.
    virtual void touch(int type, int x, int y);
    // Says what was chosen, or that nothing was; the sheet is closed already.
    virtual void answer(bool is_accepted) = 0;

    const lists::Look &look() const { return *look_; }
    const ifont *big_font() const { return big_.get(); }
    // Draws the body again and shows an area of it, in black and white.
    void show_part(const irect &part);
    void finish(bool is_accepted);
    // A button of this sheet: white in a thin border.
    void draw_key(const irect &r) const;

  private:
    void draw_buttons() const;
    void draw_button(const irect &r, const char *label, bool is_first) const;

    std::string title_;
    lists::LookPtr look_;
    text::FontPtr big_;
    irect frame_{}, inside_{}, title_place_{}, body_{}, ok_{}, cancel_{};
    int corner_ = 0; // radius of the lower corners
    kv_gestures hand_{};
};

} // namespace selectors
