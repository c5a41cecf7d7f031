// SPDX-License-Identifier: MIT
// Text, and the themes and languages that bring it.
#include <algorithm>
#include <cstdlib>

#include "failures/device.h"
#include "failures/sessions.h"
#include "kelvane/languages.h"
#include "kelvane/theme.h"
#include "support/fonts.h"
#include "support/theme_file.h"
#include "support/zip_file.h"

namespace failures {
namespace {

class Texts : public Session {
  public:
    Texts() { draw(), expected_ = canvas_.pixels; }

    bool run() override {
        text::reset();
        draw();
        return canvas_.pixels == expected_;
    }

  private:
    void draw() {
        std::fill(canvas_.pixels.begin(), canvas_.pixels.end(), uint8_t{255});
        ifont *regular = OpenFont("default", 18, 1), *bold = OpenFont("defaultb", 12, 0);
        ifont *list[] = {regular, bold};
        RegisterFontList(list, 2);
        SetFont(regular, BLACK);
        const int width = StringWidth("Wave \u0644\u0627\u4E2D") + CharWidth(0x3042);
        DrawString(0, 0, "Wave \x11 \u00E9");
        DrawTextRect(0, 20, 160, 90,
                     "Latin \2bold\n\u0627\u0644\u0633\u0644\u0627\u0645 12 "
                     "\u4E2D\u6587\u3042 \u5B57",
                     ALIGN_JUSTIFY | TEXT_UNDERLINE);
        DrawTextRect(0, 120, 100, 30, "\u4E2D and what does not fit", TEXT_DOTS | VALIGN_BOTTOM);
        if (Paginate("\017Title\nwords and \016\002more", 60, 30, 60, TEXT_MARKS | TEXT_NO_WIDOWS,
                     nullptr, 0) > 1)
            DrawTextPage(0, 150, 60, 60, "words", 0, TEXT_MARKS);
        DrawStringR(width, 190, "\u4E2D\u05D0");
        DrawSymbol(120, 160, 5);
        EnumFontsEx();
        CloseFont(regular);
        CloseFont(bold);
    }

    fonts::Folder folder_;
    fonts::Canvas canvas_{160, 200};
    std::vector<uint8_t> expected_;
};

class Themes : public Session {
  public:
    Themes() {
        ThemeFile theme("head=own,20\n*:@A=b\n");
        theme.add("pic", ThemeFile::picture(0x10));
        theme.add("own", read_file(fonts::dejavu / "DejaVuSans.ttf"));
        write_file("system/themes/t.tqt", theme.bytes());
        write_file("system/themes/t/x.bmp", "BM");
        write_zip("system/resources/t.zip", {{"y.bmp", "BM"}});
    }

    bool run() override {
        LoadLanguage("en");
        OpenTheme("t");
        EnumThemes();
        bool all = IsResourcePresent("x") && IsResourcePresent("y");
        for (const char *name : {"pic", "x", "y"}) {
            ibitmap *picture = GetResource(name, nullptr);
            all = all && (picture || *name != 'p');
            std::free(picture);
        }
        ifont *font = GetThemeFont("head", nullptr);
        CloseFont(font);
        CloseFont(LoadApplicationCaptionProperties().font);
        LoadSelectionProperties("selection");
        return all && font && *GetLangText("@A") == 'b';
    }

  private:
    Device device_;
};

class Languages : public Session {
  public:
    Languages() {
        write_file("system/language/en.txt", "English\n@B=c\n@N$1=one\n@N$2=many\n");
        write_file("system/language/de.txt", "Deutsch\n@B=d\n@A=see @B\n");
        write_file("app/en.txt", "@Mine=here\n");
    }

    bool run() override {
        char **names = EnumLanguages();
        const bool listed = names && names[0] && names[1];
        LoadLanguage("de");
        const bool german = *GetLangText("@B") == 'd';
        LoadLanguage("en");
        AddLanguageFolder("app");
        const bool mine = *GetLangText("@Mine") == 'h';
        AddTranslation("@own", "word");
        int depth = 0;
        GetLangTextR("@A", &depth);
        GetLangTextF("@B");
        GetLangTextPlural("@N", 2);
        return listed && german && mine && *GetLangText("@B") == 'c' && *GetLangText("@own") == 'w';
    }

  private:
    Device device_;
};

constexpr Area areas_here[] = {
    {"Texts", make<Texts>}, {"Themes", make<Themes>}, {"Languages", make<Languages>}};

} // namespace

constinit const std::span<const Area> look_areas = areas_here;

} // namespace failures
