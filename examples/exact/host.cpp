// The smallest host of the fixed readers: prints what is shown at every half second.
#include <kssubtitle/kssubtitle.h>

#include <cstdio>

int main(int, char** arguments) {
  ksSubtitleManager subtitles;
  if (!subtitles.Open(arguments[1])) return 1;
  std::printf("%lld ms of subtitles\n", subtitles.DurationTime());
  for (long long t = 0; t <= subtitles.DurationTime(); t += 500) {
    // A file has one width; the query of the other width returns nothing.
    const SUBTITLE_ST cue = subtitles.GetSubTitle(t);
    const SUBTITLE_ST_U wideCue = subtitles.GetSubTitleU(t);
    if (cue.start >= 0) std::printf("%lld:%s\n", t, cue.text.getData());
    if (wideCue.start >= 0) std::printf("%lld: %d wide characters\n", t, wideCue.text.length());
  }
}
