// The import library: every encoding that subtitles have, detected or given.
#include <iconv.h>

#include "tests/import_support.h"

namespace {

using namespace std::string_literals;

/// UTF-8 in another encoding.
std::string encoded(std::string text, const char* encoding) {
  const iconv_t conversion = iconv_open(encoding, "UTF-8");
  std::string bytes(4 * text.size() + 16, '\0');
  char* from = text.data();
  std::size_t left = text.size();
  char* to = bytes.data();
  std::size_t room = bytes.size();
  EXPECT_NE(iconv(conversion, &from, &left, &to, &room), static_cast<std::size_t>(-1)) << encoding;
  iconv(conversion, nullptr, nullptr, &to, &room);
  iconv_close(conversion);
  bytes.resize(bytes.size() - room);
  return bytes;
}

/// A film in which each line of `lines` is a cue.
std::string film(std::string_view lines) {
  std::string text;
  for (int i = 10; !lines.empty(); ++i) {
    const std::size_t end = std::min(lines.find('|'), lines.size());
    const std::string second = std::to_string(i);
    text += second + "\n00:00:" + second + ",000 --> 00:00:" + second + ",900\n";
    text += std::string(lines.substr(0, end)) + "\n\n";
    lines.remove_prefix(std::min(end + 1, lines.size()));
  }
  return text;
}

ksImportOptions given(const char* encoding) {
  ksImportOptions options;
  options.encoding = encoding;
  return options;
}

ksImportOptions fallingBackTo(const char* encoding) {
  ksImportOptions options;
  options.fallbackEncoding = encoding;
  return options;
}

struct Language {
  const char* encoding;
  const char* lines;
};

void PrintTo(const Language& language, std::ostream* out) { *out << language.encoding; }

constexpr char kRussian[] =
    "Здравствуйте, вы давно здесь живёте?|Нет, мы приехали только вчера вечером.|"
    "Тогда пойдёмте, я покажу вам город.|Спасибо, это очень любезно с вашей стороны.";
constexpr char kJapanese[] =
    "おはようございます。今日は寒いですね。|駅まで一緒に歩きましょう。|"
    "昨日の手紙をもう読みましたか。|いいえ、まだ机の上に置いてあります。";
constexpr char kPolish[] =
    "Dzień dobry, gdzie są twoje książki?|Leżą na stole, obok żółtej lampy.|"
    "Może pójdziemy później nad rzekę?|Chętnie, ale muszę jeszcze coś załatwić.";
constexpr char kGreek[] =
    "Καλημέρα, πού πηγαίνεις τόσο νωρίς;|Πάω στην αγορά να πάρω ψωμί και ελιές.|"
    "Θέλεις να έρθω κι εγώ μαζί σου;|Βέβαια, θα χαρώ πολύ να μου κάνεις παρέα.";
constexpr char kFrench[] =
    "Où étais-tu passée hier après-midi ?|J'étais à la fête, près du vieux château.|"
    "Tu aurais pu me prévenir, ça m'a inquiété.|Désolée, j'ai oublié ; tu as raison.";

const Language kLanguages[] = {
    {"windows-1250", kPolish},
    {"ISO-8859-2", kPolish},
    {"windows-1251", kRussian},
    {"KOI8-R", kRussian},
    {"ISO-8859-5", kRussian},
    {"windows-1252", kFrench},
    {"ISO-8859-15", kFrench},
    {"windows-1253", kGreek},
    {"ISO-8859-7", kGreek},
    {"windows-1254",
     "Günaydın, bugün hava çok güzel değil mi?|Evet, ama akşam yağmur yağacakmış.|"
     "Öyleyse şemsiyeni almayı unutma.|Teşekkür ederim, çıkarken alırım."},
    {"windows-1255",
     "בוקר טוב, לאן אתה הולך?|אני הולך לשוק לקנות לחם.|"
     "אתה רוצה שאבוא איתך?|כן, זה יהיה נחמד מאוד."},
    {"windows-1256",
     "صباح الخير، إلى أين أنت ذاهب؟|أنا ذاهب إلى السوق لأشتري الخبز.|"
     "هل تريد أن آتي معك؟|نعم، سيكون ذلك جميلا جدا."},
    {"windows-1257",
     "Labrīt, kur tu tik agri dodies?|Es eju uz tirgu pēc maizes un āboliem.|"
     "Vai vēlies, lai es nāku līdzi?|Jā, tas būtu ļoti jauki no tavas puses."},
    {"windows-1258",
     "Chào anh, hôm nay tôi đi làm.|Tôi không có tiền, anh ơi.|"
     "Trăng lên cao trên sông.|Âm thanh xa xôi đưa vào đêm."},
    {"windows-874",
     "สวัสดีครับ วันนี้อากาศดีมาก|คุณจะไปไหนแต่เช้า|ผมจะไปตลาดเพื่อซื้อผลไม้|"
     "ขอบคุณครับ แล้วพบกันใหม่"},
    {"GB18030",
     "早上好，你今天要去哪里？|我要去市场买一些新鲜的水果。|"
     "你想让我陪你一起去吗？|当然，那太好了，我们走吧。😀"},
    {"Big5",
     "早安，你今天要去哪裡？|我要去市場買一些新鮮的水果。|"
     "你想讓我陪你一起去嗎？|當然，那太好了，我們走吧。"},
    {"CP932", kJapanese},
    {"EUC-JP", kJapanese},
    {"CP949",
     "안녕하세요, 오늘은 어디로 가십니까?|시장에 가서 과일을 좀 사려고 합니다.|"
     "제가 같이 가도 괜찮겠습니까?|물론이죠, 정말 고맙습니다."},
};

class ImportEncoding : public testing::TestWithParam<Language> {
 protected:
  void expectRead(const std::string& bytes, ksImportEncodingSource source,
                  const ksImportOptions& options = {}) {
    EXPECT_TRUE(openText(parser_, bytes, options));
    EXPECT_EQ(parser_.report().encodingSource(), source) << parser_.report().encoding();
    std::string read;
    for (const ksImportCue& cue : parser_.cues())
      read += (read.empty() ? "" : "|") + std::string(cue.text);
    EXPECT_EQ(read, GetParam().lines) << "as " << parser_.report().encoding();
    EXPECT_EQ(notesOf(parser_), "");
  }

  ksImportParser parser_;
};

TEST_P(ImportEncoding, textsAreReadBack) {
  const auto& [encoding, lines] = GetParam();
  const std::string text = film(lines);
  const std::string bytes = encoded(text, encoding);
  expectRead(bytes, ksImportEncodingSource::kGiven, given(encoding));
  expectRead(bytes, ksImportEncodingSource::kDetected);
  expectRead("Content-Type: text/plain; charset="s + encoding + "\n\n" + bytes,
             ksImportEncodingSource::kDeclared);
  expectRead(text, ksImportEncodingSource::kValidUtf8);
  for (const char* const form : {"UTF-8", "UTF-16LE", "UTF-16BE", "UTF-32LE", "UTF-32BE"}) {
    SCOPED_TRACE(form);
    expectRead(encoded("\xEF\xBB\xBF" + text, form), ksImportEncodingSource::kBom);
    if (form != "UTF-8"s) expectRead(encoded(text, form), ksImportEncodingSource::kNulBytes);
    expectRead(encoded(text, form), ksImportEncodingSource::kGiven, given(form));
  }
}

std::string nameOf(const testing::TestParamInfo<Language>& info) {
  std::string name = info.param.encoding;
  std::replace(name.begin(), name.end(), '-', '_');
  return name;
}
INSTANTIATE_TEST_SUITE_P(Each, ImportEncoding, testing::ValuesIn(kLanguages), nameOf);

TEST(ImportEncodings, shortTexts_needTheRightFallback) {
  ksImportParser parser;
  const std::string bytes = encoded(film("Hello, 好"), "Big5");
  EXPECT_TRUE(openText(parser, bytes));
  EXPECT_EQ(parser.report().encoding(), "windows-1252");
  EXPECT_TRUE(openText(parser, bytes, fallingBackTo("Big5")));
  EXPECT_EQ(cuesOf(parser), "10000-10900 Hello, 好");
  EXPECT_EQ(parser.report().encodingSource(), ksImportEncodingSource::kFallback);
}

TEST(ImportEncodings, whereAnIsoStandardHasControls_windowsIsMeant) {
  const Language films[] = {
      {"windows-1250",
       "Příliš žluťoučký kůň úpěl ďábelské ódy.|Kde jsi byl celou noc, člověče?|"
       "Nevím, ale určitě se to dozvíme.|Řekni mi pravdu, prosím tě."},
      {"windows-1252", "Øl og rødgrød på bordet, Šimon!"},
  };
  for (const auto& [encoding, lines] : films) {
    ksImportParser parser;
    EXPECT_TRUE(openText(parser, encoded(film(lines), encoding)));
    EXPECT_EQ(parser.report().encoding(), encoding);
    EXPECT_EQ(parser.report().encodingSource(), ksImportEncodingSource::kDetected);
  }
}

TEST(ImportEncodings, tagsDoNotCount_inSamiAlone) {
  const std::string font =
      encoded("굴림체명조바탕고딕 굴림체명조바탕고딕 굴림체명조바탕고딕", "CP949");
  const std::string text = encoded("Здравствуйте, вы давно здесь живёте?", "windows-1251");
  std::string sami = "<SAMI>";
  for (int i = 0; i < 9; ++i) sami += "<SYNC Start=1><P><font face=" + font + ">" + text + "\n";
  for (const std::string& film : {sami, withTimes("@1<" + text + ">")}) {
    ksImportParser parser;
    EXPECT_TRUE(openText(parser, film));
    EXPECT_EQ(parser.report().encoding(), "windows-1251");
  }
}

TEST(ImportEncodings, aBadByte_leavesTheRestOfAFilmUtf8) {
  for (const char* const fallback : {"", "windows-1251", "CP949"}) {
    for (const char* const lines : {kRussian, kLanguages[19].lines}) {
      std::string text = film(lines);
      text.insert(text.rfind("\n\n"), "\xE9");
      ksImportParser parser;
      EXPECT_TRUE(openText(parser, text, fallingBackTo(fallback)));
      EXPECT_EQ(parser.report().encodingSource(), ksImportEncodingSource::kMostlyUtf8);
      EXPECT_EQ(notesOf(parser), "15 Undecodable");
      EXPECT_TRUE(parser.cues().back().text.ends_with("\xEF\xBF\xBD"));
      EXPECT_EQ(cuesOf(parser).find("\xEF\xBF\xBD"), cuesOf(parser).size() - 3);
    }
  }
}

TEST(ImportEncodings, cutSequences_leaveNearlyAsciiTextUtf8) {
  std::string text;
  for (const char* const quote : {"\u2019", "\u2019", "\u2019", "\xE2\x80", "\u2019"}) {
    text += withTimes("@1Well, that") + quote + "s what I would say to them, if they asked.\n\n";
  }
  ksImportParser parser;
  EXPECT_TRUE(openText(parser, text, fallingBackTo("windows-1252")));
  EXPECT_EQ(parser.report().encodingSource(), ksImportEncodingSource::kMostlyUtf8);
  EXPECT_EQ(parser.report().count(ksImportProblem::kUndecodable), 2U);
}

TEST(ImportEncodings, webVtt_isUtf8UnlessManyBytesAreNot) {
  const std::string head = "WEBVTT\n\n00:01.000 --> 00:02.000\n";
  ksImportParser parser;
  EXPECT_TRUE(openText(parser, head + "Caf\xE9\n", fallingBackTo("windows-1252")));
  EXPECT_EQ(cuesOf(parser), "1000-2000 Caf\uFFFD");
  EXPECT_EQ(parser.report().encodingSource(), ksImportEncodingSource::kDeclared);
  EXPECT_TRUE(openText(parser, head + encoded(kRussian, "windows-1251")));
  EXPECT_EQ(parser.report().encoding(), "windows-1251");
  EXPECT_EQ(parser.report().encodingSource(), ksImportEncodingSource::kDetected);
}

TEST(ImportEncodings, whatHasNoMeaning_isReplacedAndNoted) {
  const std::tuple<std::string, const char*, const char*, const char*> cases[] = {
      {withTimes("@1A\x81"), "windows-1252", "1000-2000 A\uFFFD", "2 Undecodable"},
      {withTimes("@1A\xED\xA0\x80"), "utf8", "1000-2000 A\uFFFD\uFFFD\uFFFD",
       "2 Undecodable; 2 Undecodable; 2 Undecodable"},
      {withTimes("@1\xF4\x8F\xBF\xBF\xF4\x90\x80\x80\xED\x7F\xC3\x7F"), "utf8",
       "1000-2000 \U0010FFFF\uFFFD\uFFFD\uFFFD\uFFFD\uFFFD\x7F\uFFFD\x7F", "2 Undecodable"},
      {encoded(withTimes("@1A"), "UTF-16LE") + "\x3D\xD8"s, "UTF-16", "1000-2000 A\uFFFD",
       "2 Undecodable"},
      {encoded(withTimes("@1A"), "UTF-16LE") + "\0\xD8\xFF\xDB"s, "UTF-16",
       "1000-2000 A\uFFFD\uFFFD", "2 Undecodable; 2 Undecodable"},
      {encoded(withTimes("@1A"), "UTF-32LE") + "\0\0\0\x70"s, "UCS-4LE",
       "1000-2000 A\uFFFD\uFFFD\uFFFD\uFFFD\uFFFD\uFFFD", "2 Undecodable"},
      {withTimes("@1A\x01") + "\0B"s, "",
       "1000-2000 A\x01"
       "B",
       "2 NulCharacter"},
  };
  for (const auto& [bytes, encoding, cues, notes] : cases) {
    ksImportParser parser;
    EXPECT_TRUE(openText(parser, bytes, given(encoding)));
    EXPECT_EQ(cuesOf(parser), cues) << encoding;
    EXPECT_TRUE(notesOf(parser).starts_with(notes)) << notesOf(parser);
  }
}

TEST(ImportEncodings, nulsAtTheEnd_areLeftOutAndNotedOnce) {
  const std::string subRip = "1\n00:00:01,000 --> 00:00:02,000\nHello, you.";
  const std::tuple<std::string, const char*, const char*> cases[] = {
      {subRip, "1000-2000 Hello, you.", "3 NulCharacter"},
      {"{0}{48}a", "0-2002 a", "0 NoFrameRate; 1 NulCharacter"},
      {"WEBVTT\n\n00:01.000 --> 00:02.000\nA\n", "1000-2000 A", "5 NulCharacter"},
  };
  for (const auto& [text, cues, notes] : cases) {
    for (const char* const encoding : {"UTF-8", "UTF-16LE", "UTF-16BE", "UTF-32LE", "UTF-32BE"}) {
      for (const std::size_t nuls : {1U, 3U, 4U, 2000U}) {
        SCOPED_TRACE(encoding + std::to_string(nuls));
        ksImportParser parser;
        EXPECT_TRUE(openText(parser, encoded(text, encoding) + std::string(nuls, '\0')));
        EXPECT_EQ(parser.report().encoding(), encoding);
        EXPECT_EQ(cuesOf(parser), cues);
        EXPECT_EQ(notesOf(parser), notes);
      }
    }
  }
}

TEST(ImportEncodings, aGivenName_yieldsToTheBomOfAnotherEncoding) {
  using enum ksImportEncodingSource;
  const std::string text = film(kRussian);
  const std::string withBom = "\xEF\xBB\xBF" + text;
  const std::tuple<const char*, std::string, const char*, ksImportEncodingSource> cases[] = {
      {"UTF-16", withBom, "UTF-8", kBom},
      {"UTF-32", withBom, "UTF-8", kBom},
      {"utf16", encoded(withBom, "UTF-32BE"), "UTF-32BE", kBom},
      {"UCS-2", encoded(text, "UTF-32LE"), "UTF-32LE", kNulBytes},
      {"UTF-16", encoded(withBom, "UTF-16BE"), "UTF-16BE", kGiven},
      {"UTF-16", encoded(text, "UTF-16BE"), "UTF-16BE", kGiven},
      {"UTF-8", withBom, "UTF-8", kGiven},
  };
  for (const auto& [name, bytes, encoding, source] : cases) {
    SCOPED_TRACE(encoding);
    ksImportParser parser;
    EXPECT_TRUE(openText(parser, bytes, given(name)));
    EXPECT_EQ(parser.report().encoding(), encoding);
    EXPECT_EQ(parser.report().encodingSource(), source);
    EXPECT_NE(cuesOf(parser).find("Здравствуйте"), std::string::npos);
  }
}

}  // namespace
