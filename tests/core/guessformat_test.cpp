#include "base/codepages.h"
#include "formats/guess.h"
#include "tests/core/formattesting.h"

#include <gtest/gtest.h>

#include <algorithm>

// These hold in a build that guesses; the tests are built with nothing else.

namespace {

struct Language {
    const char* codePage;
    const char* words;
};

class GuessedLanguage : public testing::TestWithParam<Language> {};

std::string SubRipOf(const std::string& words) {
    return "1\r\n00:00:01,000 --> 00:00:04,000\r\n" + words + "\r\n\r\n";
}

TEST_P(GuessedLanguage, IsReadAndComesBackAsItWas) {
    std::string words = GetParam().words;
    std::replace(words.begin(), words.end(), '\n', ' ');
    const std::string bytes = CodePage(GetParam().codePage).FromUtf8(SubRipOf(words)).value();
    const Loaded loaded = LoadText("x.srt", bytes, {}, std::string(GuessedPage));
    EXPECT_EQ(loaded.titles.Text(1), words) << loaded.style.codePage;
    EXPECT_EQ(SavedText("y.srt", loaded.Titles(), loaded.style, {}, std::string(GuessedPage)),
              bytes);
    // Another setting meanwhile changes nothing.
    EXPECT_EQ(SavedText("y.srt", loaded.Titles(), loaded.style, {}, "KOI8-R"), bytes);
}

INSTANTIATE_TEST_SUITE_P(
    All, GuessedLanguage,
    testing::Values(
        Language{
            "windows-1252",
            "Schöne Grüße aus München!\nDas ist völlig unmöglich.\nEr weiß es nicht, natürlich."},
        Language{"windows-1252", "Où êtes-vous allé hier soir ?\nÇa m'étonne, c'est très "
                                 "étrange.\nJe préfère le café à l'hôtel."},
        Language{"windows-1252",
                 "¿Dónde está el niño?\n¡Mañana será otro día!\nÉl no sabía qué hacer."},
        Language{"windows-1250", "Gdzie jesteś, żółta łódź?\nNie wiem, co się stało z nią.\nMoże "
                                 "jutro będzie lepiej, kochanie."},
        Language{"windows-1250",
                 "Příliš žluťoučký kůň úpěl.\nKde jsi byl včera večer?\nNevím, co se stalo, šéfe."},
        Language{"windows-1250", "Hol voltál tegnap este?\nNem tudom, mi történt vele.\nŐrült "
                                 "vagy, kérlek menj el innen!"},
        Language{"windows-1251", "Где ты был вчера вечером?\nЯ не знаю, что случилось.\nМожет "
                                 "быть, завтра будет лучше."},
        Language{"windows-1251",
                 "Къде беше снощи?\nНе знам какво се случи.\nМоже би утре ще бъде по-добре."},
        Language{"KOI8-R", "Где ты был вчера вечером?\nЯ не знаю, что случилось.\nМожет быть, "
                           "завтра будет лучше."},
        Language{"windows-1253",
                 "Πού ήσουν χθες το βράδυ;\nΔεν ξέρω τι συνέβη.\nΊσως αύριο να είναι καλύτερα."},
        Language{"windows-1254", "Dün gece neredeydin?\nNe olduğunu bilmiyorum, şey.\nBelki yarın "
                                 "daha iyi olacak, değil mi, kızım?"},
        Language{"windows-1255",
                 "איפה היית אתמול בלילה?\nאני לא יודע מה קרה.\nאולי מחר יהיה טוב יותר."},
        Language{"windows-1256",
                 "أين كنت الليلة الماضية؟\nلا أعرف ماذا حدث.\nربما يكون الغد أفضل."},
        Language{
            "SHIFT_JIS",
            "昨夜はどこにいたの？\n何が起こったか分からない。\n明日はもっと良くなるでしょう。"},
        Language{
            "EUC-JP",
            "昨夜はどこにいたの？\n何が起こったか分からない。\n明日はもっと良くなるでしょう。"},
        Language{"GB18030", "你昨晚在哪里？\n我不知道发生了什么事。\n也许明天会更好。"},
        Language{"BIG5", "你昨晚在哪裡？\n我不知道發生了什麼事。\n也許明天會更好。"},
        Language{
            "UHC",
            "어젯밤에 어디 있었어?\n무슨 일이 일어났는지 모르겠어.\n아마 내일은 더 나아질 거야."},
        Language{"TIS-620", "เมื่อคืนคุณอยู่ที่ไหน\nฉันไม่รู้ว่าเกิดอะไรขึ้น\nพรุ่งนี้อาจจะดีขึ้น"}));

TEST(Guess, OfFewBytesItIsTheUsualPage) {
    for (const char* bytes : {"", "plain", "caf\xE9", "Se\xF1or", "na\xEFve \x93quote\x94",
                              "\xA9 1999", "M\xFCller \x96 ja"})
        EXPECT_EQ(GuessCodePage(bytes), "windows-1252") << bytes;
}

TEST(Guess, GivesEveryByteBack) {
    std::string bytes;
    for (int round = 0; round < 3; ++round)
        for (int byte = 255; byte >= 128; --byte)
            bytes += static_cast<char>(byte);
    for (const std::string& text : {bytes, bytes + "\x81", std::string("\xFF\xFF\xFF\xFF\xFF")}) {
        const CodePage page(GuessCodePage(text));
        EXPECT_EQ(page.FromUtf8(page.ToUtf8(text)), text) << page.Name();
    }
}

TEST(Guess, IsNotAskedOfMarkedAndUnicodeFiles) {
    EXPECT_EQ(
        LoadText("x.srt", SubRipOf("caf\xC3\xA9"), {}, std::string(GuessedPage)).style.codePage,
        "");
    EXPECT_EQ(LoadText("x.srt", "\xEF\xBB\xBF" + SubRipOf("\xE9\xE9\xE9\xE9\xE9"), {},
                       std::string(GuessedPage))
                  .titles.Text(1),
              "\xC3\xA9\xC3\xA9\xC3\xA9\xC3\xA9\xC3\xA9");
}

TEST(Guess, ANamedPageIsUsedAsItIs) {
    const Loaded loaded = LoadText("x.srt", SubRipOf("\xEB\xE5\xE2\xEC\xF3"), {}, "KOI8-R");
    EXPECT_EQ(loaded.style.codePage, "KOI8-R");
    EXPECT_EQ(loaded.titles.Text(1), "КЕБЛС");
}

} // namespace
