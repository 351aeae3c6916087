// The smallest host: prints what is shown at every half second.
#include <kssubtitle/import.h>

#include <cstdio>

int main(int, char** arguments) {
  ksImportParser subtitles;
  if (!subtitles.Open(arguments[1])) {
    const std::string_view reason = subtitles.report().refusalSentence();
    std::printf("%.*s\n", static_cast<int>(reason.size()), reason.data());
    return 1;
  }
  std::printf("%lld ms of subtitles\n", subtitles.DurationTime());
  for (long long t = 0; t <= subtitles.DurationTime(); t += 500) {
    const SUBTITLE_ST cue = subtitles.GetSubTitle(t);
    if (cue.start >= 0) std::printf("%lld:%s\n", t, cue.text.getData());
  }
}
