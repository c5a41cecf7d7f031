// SPDX-License-Identifier: MIT
// How a component takes the screen and the input over, and what it gives back when it closes.
//
// A dialog, a level of a menu and the keyboard each keep one in their record; open ones form a
// stack, a vector of them. To open: save the area, draw, take the input. To close: close what
// has opened above, restore the area, give the input back, and only then call the result callback,
// which may open another component.
#pragma once

#include "kelvane/events.h"
#include "modal/saved_area.h"
#include "runtime/handlers.h"

namespace modal {

// Whether the current handler is a component's, above the application.
bool is_open();

class Takeover {
  public:
    SavedArea under; // what the component covers

    // Makes `handler` the current one, keeps the one before with its key rate, and sets bits UI_*.
    // `close` closes the top component of this kind of handler, whichever it is.
    void take_input(kv_handler handler, int flags, void (*close)());
    // Closes the components that have opened above this one and are still there, so that none of
    // them gives the input back to a handler that is gone. Their callbacks may open others.
    void close_above() const;
    // Makes the previous handler current again with its key rate and clears the bits that were not
    // set before. It hears EVT_RESTORE, and then of the last change of the orientation that it
    // missed. Nothing when the input has not been taken.
    void give_input_back();

    // The handler to return to; null when there was none or the input has not been taken.
    kv_handler previous() const { return previous_; }

  private:
    kv_handler own_ = nullptr, previous_ = nullptr;
    KeyRate rate_{};
    int flags_ = 0; // the bits to clear
    unsigned orientation_changes_ = 0;
    bool has_input_ = false;
};

} // namespace modal
