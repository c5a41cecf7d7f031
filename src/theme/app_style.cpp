// SPDX-License-Identifier: MIT
// How an application is operated: by keys, by touch or by both.
#include <cstdlib>
#include <cstring>
#include <string>

#include "ground/guard.h"
#include "hw.h"
#include "kelvane/theme.h"

namespace {

constexpr int keys = 1, touch = 2;
constexpr int keyboard_with_keys = 1;

bool is_style(int style) {
    return style >= keys && style <= (keys | touch);
}

// The style of applications that have none of their own, kept once it is known.
int common_style() {
    static int style = 0;
    if (style == 0) style = GetThemeInt("application.style", GetDefaultAppStyle());
    return style;
}

} // namespace

int GetDefaultAppStyle(void) {
    return (device_touchpanel() > 0 ? touch : 0) |
           (device_keyboard() == keyboard_with_keys ? keys : 0);
}

int GetAppStyle(const char *app) {
    return ground::guarded_or(
        [&]() -> int {
            const bool is_common = !app || std::strcmp(app, "default") == 0;
            const std::string prefix = is_common ? "" : std::string(app) + ".";
            const int style = GetThemeInt((prefix + "application.style").c_str(), common_style());
            return is_style(style) ? style : GetDefaultAppStyle();
        },
        [&]() -> int { return GetDefaultAppStyle(); });
}

iappstyle *GetAppStyleEx(const char *app) {
    auto *style = static_cast<iappstyle *>(std::malloc(sizeof(iappstyle)));
    if (style) style->app_style = GetAppStyle(app);
    return style;
}

int GetAppGlobalStyle(void) {
    return common_style();
}
