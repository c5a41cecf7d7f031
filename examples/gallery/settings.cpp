// SPDX-License-Identifier: MIT
// Settings in a file of the gallery's own, the status panel, which this page switches on, and the
// hourglass.
#include <chrono>
#include <cstdio>
#include <thread>

#include "rows.h"

namespace {

const char *sides[] = {"Left", "Right", nullptr};
const char *sizes[] = {"Small", "Medium", "Large", "Very large", nullptr};
const char *minutes[] = {"1", "60", nullptr};
const char *columns[] = {"1", "3", nullptr};

iconfigedit account_rows[] = {
    {CONFIG_TEXT, nullptr, "Name", nullptr, "account.name", "", nullptr, nullptr, nullptr},
    {CONFIG_PASSWORD, nullptr, "Password", nullptr, "account.secret", nullptr, nullptr, nullptr,
     nullptr},
    {CONFIG_ACTION, nullptr, "Sign in", nullptr, nullptr, nullptr, nullptr, nullptr, nullptr},
    {}};

iconfigedit settings[] = {
    {CONFIG_HEADING, nullptr, "Reading", nullptr, nullptr, nullptr, nullptr, nullptr, nullptr},
    {CONFIG_CHOICE, nullptr, "Text size", nullptr, "text.size", "Medium", sizes, nullptr, nullptr},
    {CONFIG_FONT, nullptr, "Font", nullptr, "font", "DejaVuSans", nullptr, nullptr, nullptr},
    {CONFIG_NUMBER, nullptr, "Columns", "While the screen lies on its side", "columns", "2",
     columns, nullptr, nullptr},
    {CONFIG_POSITION, nullptr, "Page numbers", nullptr, "numbers.side", "1", sides, nullptr,
     nullptr},
    {CONFIG_SWITCH, nullptr, "Swipes turn pages", nullptr, "swipes", "1", nullptr, nullptr,
     nullptr},
    {CONFIG_HEADING, nullptr, "Device", nullptr, nullptr, nullptr, nullptr, nullptr, nullptr},
    {CONFIG_NUMBER, nullptr, "Minutes until sleep", nullptr, "sleep", "10", minutes, nullptr,
     nullptr},
    {CONFIG_TIME, nullptr, "Wake at", nullptr, "wake", "07:30", nullptr, nullptr, nullptr},
    {CONFIG_DATE, nullptr, "Library card ends", "The library reminds you a week before",
     "card.ends", "2026-12-31", nullptr, nullptr, nullptr},
    {CONFIG_SUBMENU, nullptr, "Account", nullptr, nullptr, nullptr, nullptr, account_rows, nullptr},
    {}};

iconfig *config();
void tell(const iconfigedit *row, void *context);

void open_settings() {
    OpenConfigEditor("Settings", config(), settings, tell, nullptr);
}

// As a long computation does.
void work() {
    const kelvane::HourglassGuard hourglass;
    std::this_thread::sleep_for(std::chrono::milliseconds(200));
}

const Row rows[] = {{"Settings", open_settings}, {"A moment of work", work}};

Rows &page_rows() {
    static Rows page(settings_page, rows, "The last change is named here");
    return page;
}

iconfig *config() {
    static iconfig *opened = OpenConfig("./system/config/gallery.cfg", settings);
    return opened;
}

// Shown when the page is there again.
void tell(const iconfigedit *row, void *) {
    static char text[80] = "Nothing was changed";
    if (!row) return page_rows().answer(text);
    const char *value = row->name ? ReadString(config(), row->name, "") : "";
    std::snprintf(text, sizeof text, "%s: %s", row->text,
                  row->type == CONFIG_PASSWORD ? "it is kept secret" : value);
}

void draw(const irect &area) {
    page_rows().draw(area);
}

int handle(int type, int par1, int par2, const irect &) {
    if (type != EVT_PANEL) return page_rows().handle(type, par1, par2);
    constexpr const char *parts[] = {"Between its parts", "The clock",   "The title",  "The pages",
                                     "Locked keys",       "The network", "The battery"};
    page_rows().answer(parts[par1]);
    return 1;
}

} // namespace

const Page settings_page = {"Settings", "A table of settings, the status panel, and an hourglass",
                            draw, handle, nullptr};
