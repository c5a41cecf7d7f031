// SPDX-License-Identifier: MIT
// Language files as they lie on a device, and the texts that come out of them.
#include <gtest/gtest.h>
#include <sstream>
#include <string>
#include <tuple>
#include <vector>

#include "internal.h"
#include "kelvane/languages.h"
#include "support/tempdir.h"

namespace {

class LanguagesTest : public testing::Test {
  protected:
    void write_language(const std::string &code, std::string_view text) {
        write_file("system/language/" + code + ".txt", text);
    }
    TempDir device_;
};

void expect_texts(std::initializer_list<std::pair<const char *, const char *>> texts) {
    for (auto [key, text] : texts) EXPECT_STREQ(GetLangText(key), text) << key;
}

} // namespace

TEST_F(LanguagesTest, FileFormat) {
    write_file("system/config/device.cfg", "model = X5\npartner=Shop\n");
    write_language("en", "English\n@Only=only English\n%RTL\n");
    using std::string_literals::operator""s;
    const std::string longest(16380, 'l');
    const std::string text = "\xEF\xBB\xBF"
                             "Deutsch \t\r\n"
                             "@A=eins \t\r\n"
                             " \t@B = zwei\\n\\101\\q\n"
                             "@C=first\n@C=second=third\n"
                             "#@D=comment\n\n=nameless\nwithout equals\n"
                             "@E=a\0b\n"
                             "[x4,Y7]\n@S=other\n%RTL\n[y1,x5]\n@S=own\n[shop]\n@P=partner\n"
                             "[]\n@S=nobody\n[X5]\n@L="s +
                             longest + "@M=dropped\n@Z=last";
    write_language("de", text);
    write_language("off", "# not yet\n@A=off\n");
    LoadLanguage("de");
    expect_texts({{"de", "English"}, // the first language that is loaded
                  {"@A", "eins"},
                  {"@B", "@B"},
                  {"@B ", " zwei\nA\\q"},
                  {"@C", "second=third"},
                  {"@D", "@D"},
                  {"", "nameless"},
                  {"@S", "own"},
                  {"@P", "partner"},
                  {"@E", "a"},
                  {"@M", "@M"},
                  {"@Z", "last"},
                  {"@Only", "only English"},
                  {"unknown", "unknown"},
                  {nullptr, nullptr}});
    EXPECT_TRUE(GetLangText("@L") == longest);
    EXPECT_STREQ(GetCurrentLangText("@Only"), "@Only");
    EXPECT_STREQ(kvstate.locale, "de");
    EXPECT_FALSE(IsRTL()) << "neither English nor another device's section counts";
    LoadLanguage("de");
    EXPECT_STREQ(GetLangText("de"), "Deutsch");
    LoadLanguage("off");
    expect_texts({{"off", "off"}, {"@A", "@A"}, {"@Only", "only English"}});
}

// Before the device's texts, the later folder first, after each change of language.
TEST_F(LanguagesTest, ApplicationsBringTheirOwn) {
    write_language("en", "English\n@OK=OK\n@Open=Open\n@Only=device\n");
    write_language("de", "Deutsch\n@OK=Gut\n@Open=\xC3\x96"
                         "ffnen\n");
    write_language("ar", "Arabic\n%RTL\n");
    write_file("app/en.txt", "\xEF\xBB\xBF@Title=Articles\n@Open=Open it\n@Only=app\n@More=more\n");
    write_file("app/de.txt", "# of no consequence\n@Title=Artikel\n@Open=Lesen\n%RTL\n");
    write_file("extra/en.txt", "English\n@Title=Extra\n");
    AddLanguageFolder(nullptr);
    AddLanguageFolder("nowhere");
    LoadLanguage("de");
    EXPECT_STREQ(GetLanguage(), "de");
    const char *const before = GetLangText("@Open");
    AddLanguageFolder("app");
    AddLanguageFolder("app");
    EXPECT_STREQ(before, "\xC3\x96"
                         "ffnen")
        << "a text that was handed out stays";
    expect_texts({{"@Title", "Artikel"},
                  {"@Open", "Lesen"},
                  {"@OK", "Gut"},
                  {"@Only", "app"},
                  {"@More", "more"}});
    EXPECT_FALSE(IsRTL());
    AddTranslation("@Title", "theme");
    expect_texts({{"@Title", "theme"}});
    AddLanguageFolder("extra");
    expect_texts({{"@Title", "Extra"}}); // it was added last
    LoadLanguage("de");
    expect_texts({{"@Title", "Artikel"}});
    LoadLanguage("en");
    EXPECT_STREQ(GetLanguage(), "en");
    expect_texts({{"@Title", "Extra"}, {"@Open", "Open it"}, {"@OK", "OK"}});
    LoadLanguage("ar");
    expect_texts({{"@Title", "Extra"}, {"@OK", "OK"}, {"@Only", "app"}});
    EXPECT_TRUE(IsRTL());
}

// Its own texts come before the device's, in whatever language; and a language may be its own.
TEST_F(LanguagesTest, ApplicationsBringTheirOwnLanguages) {
    write_language("en", "English\n@Save=Save\n@OK=OK\n");
    write_language("de", "Deutsch\n@Save=Speichern\n@OK=Gut\n");
    write_file("app/en.txt", "English\n@Save=Keep it\n");
    write_file("app/de.txt", "Deutsch\n@x=y\n");
    write_file("app/fr.txt", "Fran\xC3\xA7"
                             "ais\n@Save=Garder\n");
    write_file("more/fa.txt", "Persian\n%RTL\n@Save=fa\n");
    write_file("outside.txt", "none\n");
    LoadLanguage("de");
    AddLanguageFolder("app");
    expect_texts({{"@Save", "Keep it"}, {"@OK", "Gut"}});
    EXPECT_STREQ(GetCurrentLangText("@Save"), "Speichern");
    LoadLanguage("fr");
    EXPECT_STREQ(GetLanguage(), "fr");
    expect_texts({{"@Save", "Garder"}, {"@OK", "OK"}, {"en", "English"}, {"fr", "fr"}});
    EXPECT_STREQ(GetCurrentLangText("@Save"), "Garder");
    AddTranslation("@Save", "theme");
    expect_texts({{"@Save", "theme"}});
    LoadLanguage("../outside");
    EXPECT_STREQ(GetLanguage(), "en");
    expect_texts({{"@Save", "Keep it"}});
    LoadLanguage("fa");
    EXPECT_STREQ(GetLanguage(), "en");
    AddLanguageFolder("more"); // behind the call that asked for it
    EXPECT_STREQ(GetLanguage(), "fa");
    EXPECT_TRUE(IsRTL());
    expect_texts({{"@Save", "fa"}, {"@OK", "OK"}});
    LoadLanguage("de");
    EXPECT_FALSE(IsRTL());
    LoadLanguage("fa");
    EXPECT_STREQ(GetLanguage(), "fa");
    EXPECT_TRUE(IsRTL());
}

TEST_F(LanguagesTest, MissingFilesFallBack) {
    LoadLanguage("de");
    EXPECT_STREQ(GetLangText("@A"), "@A");
    write_language("en", "English\n@A=one\n");
    LoadLanguage("../xx");
    EXPECT_STREQ(GetLangText("@A"), "one");
    EXPECT_STREQ(kvstate.locale, "en");
    EXPECT_STREQ(GetLangText("en"), "English");
    LoadLanguage(nullptr);
    EXPECT_STREQ(GetLangText("@A"), "one");
    AddTranslation("@A", "themed");
    EXPECT_STREQ(GetLangText("@A"), "themed");
    LoadLanguage("en");
    EXPECT_STREQ(GetLangText("@A"), "one");
}

TEST_F(LanguagesTest, ListsNames) {
    write_language("he", std::string(70, 'n').append("=x\n%RTL\n@A=a\n"));
    write_language("de", "Deutsch\n");
    write_file("system/language/readme.md", "no language\n");
    char **codes = EnumLanguages();
    ASSERT_NE(codes, nullptr);
    EXPECT_STREQ(codes[0], "de");
    EXPECT_STREQ(codes[1], "he");
    EXPECT_EQ(codes[2], nullptr);
    expect_texts({{"de", "Deutsch"}, {"he", std::string(63, 'n').c_str()}});
    LoadLanguage("he");
    EXPECT_STREQ(GetLangText("@A"), "a");
    EXPECT_TRUE(IsRTL());
    EXPECT_TRUE(IsBookRTL());
    SetRTLBook(0);
    EXPECT_FALSE(IsBookRTL());
    SetRTLBook(-1);
    EXPECT_TRUE(IsBookRTL());
}

TEST_F(LanguagesTest, TextsLeadOnToOthers) {
    AddTranslation("@A", "@B \n\x80");
    AddTranslation("@B", "Hello");
    AddTranslation("@Lost", "@Nowhere");
    AddTranslation("@Sentence", "@B is no word");
    AddTranslation("@Self", "@Self");
    AddTranslation("plain", "@B");
    expect_texts({{"@A", "Hello"},
                  {"@Lost", "@Nowhere"},
                  {"@Sentence", "@B is no word"},
                  {"@Self", "@Self"},
                  {"plain", "Hello"}});
    EXPECT_STREQ(GetLangTextS("@A"), "@B \n\x80");
    for (int i = 0; i < 11; i++)
        AddTranslation(("@K" + std::to_string(i)).c_str(), ("@K" + std::to_string(i + 1)).c_str());
    AddTranslation("@K11", "end");
    AddTranslation("@Loop", "@Back");
    AddTranslation("@Back", "@Loop");
    expect_texts({{"@K1", "end"}, {"@K0", "@K11"}, {"@Loop", "@Back"}});
    int depth = 9;
    EXPECT_STREQ(GetLangTextR("@K10", &depth), "end");
    EXPECT_EQ(depth, 10);
    EXPECT_STREQ(GetLangTextR("@K10", &depth), "@K11");
    EXPECT_STREQ(GetLangTextF("@%c", 'A'), "Hello");
    EXPECT_STREQ(GetLangTextF("%d%s", 7, "up"), "7up");
    EXPECT_STREQ(GetLangTextF("%s and on", GetLangTextF("%d%s", 7, "up")), "7up and on");
    EXPECT_EQ(std::string(GetLangTextF("%2000d", 1)).size(), 1023U);
}

TEST_F(LanguagesTest, PluralForms) {
    // Numbers of each form in turn.
    const struct {
        const char *codes;
        std::vector<std::vector<int>> forms;
    } rows[] = {
        {"am az bg da de el en es et fi he hu it kk nl no pt sv",
         {{1}, {-5, -1, 0, 2, 11, 21, 101}}},
        {"fr tr zh", {{-5, -1, 0, 1}, {2, 11, 21, 101, 250}}},
        {"ka xx EN e", {{-5, 0, 1, 2, 5, 250}}},
        {"ar",
         {{0}, {1}, {2}, {3, 10, 103, 210}, {11, 99, 111, 199}, {-5, -1, 100, 101, 102, 200, 202}}},
        {"be hr ru uk",
         {{1, 21, 91, 101, 221},
          {2, 4, 22, 34, 102, 123},
          {-5, -1, 0, 5, 11, 12, 14, 20, 111, 112}}},
        {"lt", {{1, 21, 101}, {2, 9, 25, 102, 129}, {-5, -1, 0, 10, 11, 12, 19, 20, 111, 119}}},
        {"cs sk", {{1}, {2, 3, 4}, {-5, -1, 0, 5, 11, 21, 22, 102}}},
        {"lv", {{1, 21, 101}, {-5, -1, 2, 10, 11, 111, 250}, {0}}},
        {"mk", {{1, 11, 21, 111}, {2, 12, 22, 112}, {-5, -1, 0, 3, 10, 20}}},
        {"pl", {{1}, {2, 4, 22, 102, 104}, {-5, -1, 0, 5, 11, 12, 14, 21, 25, 101, 112}}},
        {"ro", {{1}, {0, 2, 19, 101, 119, 201}, {-5, -1, 20, 100, 120, 200, 250}}},
        {"sl", {{1, 101, 201}, {2, 102}, {3, 4, 103, 204}, {-5, -1, 0, 5, 11, 12, 100, 111}}},
    };
    constexpr const char *suffixes[] = {"", "_2", "_3", "_4", "_5", "_6"};
    for (const auto &row : rows) {
        std::istringstream codes(row.codes);
        for (std::string code; codes >> code;)
            for (size_t form = 0; form < row.forms.size(); form++)
                for (int n : row.forms[form])
                    EXPECT_STREQ(GetPluralKeySuffix(code.c_str(), n), suffixes[form])
                        << code << " " << n;
    }
    EXPECT_STREQ(GetPluralKeySuffix(nullptr, 2), "");
}

TEST_F(LanguagesTest, TextsForNumbers) {
    write_language("ru", "Russian\n@Book=one\n@Book_2=few\n@Word=words\n");
    LoadLanguage("ru");
    for (auto [key, n, text] : {std::tuple{"@Book", 1, "one"},
                                {"@Book", 23, "few"},
                                {"@Book", 5, "one"},
                                {"@Word", 2, "words"},
                                {"@None", 2, "@None"}})
        EXPECT_STREQ(GetLangTextPlural(key, n), text) << key << " " << n;
}
