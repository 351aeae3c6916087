// The smallest host: prints what is shown at every half second.
#include <kssubtitle/kssubtitle.h>

#include <cstdio>

int main(int, char** arguments) {
  ksSubtitleManager subtitles;
  if (!subtitles.Open(arguments[1])) return 1;
  std::printf("%lld ms of subtitles\n", subtitles.DurationTime());
  for (long long t = 0; t <= subtitles.DurationTime(); t += 500) {
    const SUBTITLE_ST cue = subtitles.GetSubTitle(t);  // GetSubTitleU(t) if the file is wide
    if (cue.start >= 0) std::printf("%lld:%s\n", t, cue.text.getData());
  }
}
