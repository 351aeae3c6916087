// Writes plain text: the texts of the cues alone.
#include "kssubtitle/import/writers/writers.h"

namespace kssubtitle::importing {

std::string writeText(OutgoingCues cues) {
  std::string out;
  for (const OutgoingCue& cue : cues) {
    if (!out.empty()) out += '\n';
    out += cue.text.characters + '\n';
  }
  return out;
}

}  // namespace kssubtitle::importing
