// SPDX-License-Identifier: MIT
// Text and themes when memory is short: each allocation fails in turn, and afterwards all is as
// ever.
#include <cstdlib>
#include <gtest/gtest.h>

#include "kelvane/languages.h"
#include "kelvane/theme.h"
#include "support/failing_memory.h"
#include "support/fonts.h"
#include "support/headless.h"
#include "support/theme_file.h"
#include "support/zip_file.h"

namespace {

class ShortMemory : public testing::Test {
  protected:
    fonts::Folder folder;
    fonts::Canvas canvas{160, 200};

    // What an application does with text, without an allocation of its own. False when something
    // did not come out.
    bool session() {
        static const std::vector<uint8_t> expected = (draw(), canvas.pixels);
        draw();
        return canvas.pixels == expected;
    }

  private:
    void draw() {
        std::fill(canvas.pixels.begin(), canvas.pixels.end(), uint8_t{255});
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
        DrawStringR(width, 190, "\u4E2D\u05D0");
        DrawSymbol(120, 160, 5);
        EnumFontsEx();
        CloseFont(regular);
        CloseFont(bold);
    }
};

TEST_F(ShortMemory, EachAllocationMayFail) {
    ASSERT_TRUE(session());
    testing::internal::CaptureStderr();
    for (const auto times : {FailingMemory::once, FailingMemory::for_ever}) {
        bool has_failed = true;
        for (long k = 0; has_failed; ++k) {
            text::reset();
            {
                const FailingMemory memory(k, times);
                session();
                has_failed = memory.has_failed();
            }
            EXPECT_TRUE(session()) << "after allocation " << k << " failed";
        }
    }
    testing::internal::GetCapturedStderr();
}

class ShortMemoryOfThemes : public headless::Test {};

TEST_F(ShortMemoryOfThemes, EachAllocationMayFail) {
    ThemeFile theme("head=own,20\n*:@A=b\n");
    theme.add("pic", ThemeFile::picture(0x10));
    theme.add("own", read_file("/usr/share/fonts/truetype/dejavu/DejaVuSans.ttf"));
    write_file("system/themes/t.tqt", theme.bytes());
    write_file("system/themes/t/x.bmp", "BM");
    write_zip("system/resources/t.zip", {{"y.bmp", "BM"}});
    write_file("system/language/en.txt", "English\n@B=c\n");
    const auto use = [] {
        LoadLanguage("en");
        EnumLanguages();
        OpenTheme("t");
        for (const char *name : {"pic", "x", "y"}) std::free(GetResource(name, nullptr));
        ifont *font = GetThemeFont("head", nullptr);
        CloseFont(font);
        return font && *GetLangText("@A") == 'b' && *GetLangText("@B") == 'c';
    };
    testing::internal::CaptureStderr();
    ASSERT_TRUE(use());
    for (const auto times : {FailingMemory::once, FailingMemory::for_ever}) {
        bool has_failed = true;
        for (long k = 0; has_failed; ++k) {
            {
                const FailingMemory memory(k, times);
                use();
                has_failed = memory.has_failed();
            }
            EXPECT_TRUE(use()) << "after allocation " << k << " failed";
        }
    }
    testing::internal::GetCapturedStderr();
}

} // namespace
