// SPDX-License-Identifier: MIT
// Shows a picture over the screen and takes it away again.
#include "hourglass/hourglass.h"

#include <algorithm>
#include <utility>

#include "chrome/panel.h"
#include "internal.h"
#include "kelvane/events.h"
#include "kelvane/frames.h"
#include "kelvane/hourglass.h"
#include "kelvane/theme.h"
#include "kelvane/updates.h"
#include "modal/saved_area.h"
#include "raster/screen_scope.h"
#include "runtime/interface_flags.h"
#include "theme/parameters.h"

namespace {

struct State {
    int calls = 0;
    irect place{};
    modal::SavedArea under, drawn;
    bool at_exit = false;
};
State state;

// A small box as menus have it: the picture, white, a border and a rim of white.
struct Box {
    theme::Picture picture{"library_hourglass"};
    int unit = std::clamp(GetThemeInt("unit.size", 4), 1, 64);
    int border = std::clamp(GetThemeInt("context_menu.border.size", 3), 0, 64);
    int radius = std::clamp(GetThemeInt("context_menu.border.radius", 2 * unit), 0, 64);

    int rim() const { return 2 * unit; }
    int around() const { return rim() + border + 2 * unit; }
};

irect place_of(const Box &box, int x, int y) {
    const int w = box.picture.width() + 2 * box.around();
    const int h = box.picture.height() + 2 * box.around();
    const int foot = ScreenHeight() - PanelHeight();
    return {std::clamp(x - w / 2, 0, std::max(ScreenWidth() - w, 0)),
            std::clamp(y - h / 2, 0, std::max(foot - h, 0)), w, h, 0};
}

void update(const irect &r) {
    PartialUpdate(r.x, r.y, r.w, r.h);
}

void draw(const Box &box, const irect &r) {
    const raster::ScreenScope screen;
    FillAreaRect(&r, WHITE);
    const int rim = box.rim();
    const irect frame{r.x + rim, r.y + rim, r.w - 2 * rim, r.h - 2 * rim, 0};
    DrawBorder(&frame, box.border, ROUND_ALL, box.radius, BLACK);
    DrawBitmap(r.x + box.around(), r.y + box.around(), box.picture.get());
}

void show(int x, int y) {
    const Box box;
    if (!box.picture || !kvstate.framebuffer) return;
    state.place = place_of(box, x, y);
    if (!state.under.save(state.place)) return;
    draw(box, state.place);
    state.drawn.save(state.place, {}); // it covers nothing: it is only compared
    update(state.place);
}

// What was drawn over the hourglass stays.
void hide() {
    const bool is_untouched = state.drawn.is_on_screen();
    state.drawn.drop();
    if (!is_untouched) return state.under.drop();
    if (state.under.restore()) update(state.place);
}

} // namespace

namespace hourglass {

void show_at_exit() {
    if (!state.at_exit && GetThemeInt("hourglass.exit", 0) == 0) return;
    ShowHourglass();
}

void reset() {
    state = {};
}

} // namespace hourglass

void ShowHourglass() {
    ShowHourglassAt(ScreenWidth() / 2, (ScreenHeight() - PanelHeight()) / 2);
}

void ShowHourglassAt(int x, int y) {
    if (!kvstate.isopen || state.calls++ > 0) return;
    show(std::clamp(x, 0, ScreenWidth()), std::clamp(y, 0, ScreenHeight()));
}

void HideHourglass() {
    if (state.calls > 0 && --state.calls == 0) hide();
}

void EnableExitHourglass() {
    state.at_exit = true;
    clear_interface_flags(UI_NO_EXIT_HOURGLASS);
}
