// libass, which reads scripts, and libavformat, which reads any text subtitles.
#include "benchmarks/peers.h"

#include <ass/ass.h>

#include <memory>

extern "C" {
#include <libavformat/avformat.h>
}

namespace bench {
namespace {

std::size_t readByLibass(const std::string& path) {
  struct Closing {
    void operator()(ASS_Library* library) const { ass_library_done(library); }
    void operator()(ASS_Track* track) const { ass_free_track(track); }
  };
  const std::unique_ptr<ASS_Library, Closing> library(ass_library_init());
  ass_set_message_cb(
      library.get(), [](int, const char*, va_list, void*) {}, nullptr);
  std::string name = path;
  const std::unique_ptr<ASS_Track, Closing> track(
      ass_read_file(library.get(), name.data(), nullptr));
  return track ? static_cast<std::size_t>(track->n_events) : 0;
}

std::size_t readByLibavformat(const std::string& path) {
  av_log_set_level(AV_LOG_QUIET);
  AVFormatContext* context = nullptr;
  if (avformat_open_input(&context, path.c_str(), nullptr, nullptr) < 0) return 0;
  AVPacket* packet = av_packet_alloc();
  std::size_t cues = 0;
  for (; av_read_frame(context, packet) >= 0; ++cues) av_packet_unref(packet);
  av_packet_free(&packet);
  avformat_close_input(&context);
  return cues;
}

}  // namespace

std::vector<Peer> peers() {
  return {{"libavformat", true, &readByLibavformat}, {"libass", false, &readByLibass}};
}

}  // namespace bench
