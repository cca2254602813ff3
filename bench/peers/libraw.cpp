// Peers from LibRaw: its adaptive homogeneity-directed demosaicing alone, without the rest of its pipeline. It works in
// 16 bits in place, on pixels of four samples. It would use OpenMP's threads, whose time is not ours to measure.

#include <libraw/libraw.h>
#include <omp.h>

#include <cstring>
#include <memory>

#include "peers/peers.h"

namespace bench {
namespace {

class Interpolation : public LibRaw {
 public:
  Interpolation(const Call& call, size_t bytesPerSample) {
    imgdata.sizes.width = imgdata.sizes.iwidth = imgdata.sizes.raw_width = static_cast<ushort>(call.width);
    imgdata.sizes.height = imgdata.sizes.iheight = imgdata.sizes.raw_height = static_cast<ushort>(call.height);
    imgdata.idata.colors = 3;
    imgdata.idata.filters = 0x94949494;  // R G over G B
    for (int c = 0; c < 3; ++c) imgdata.color.rgb_cam[c][c] = 1;
    pixels_ = std::make_unique<ushort[][4]>(static_cast<size_t>(call.width) * call.height);
    imgdata.image = pixels_.get();
    for (int y = 0; y < call.height; ++y) {
      for (int x = 0; x < call.width; ++x) {
        ushort sample = 0;
        std::memcpy(&sample, call.src[0].at + y * static_cast<ptrdiff_t>(call.src[0].step) + x * bytesPerSample,
                    bytesPerSample);
        pixels_[y * static_cast<size_t>(call.width) + x][COLOR(y, x)] = sample;
      }
    }
  }
  ~Interpolation() { imgdata.image = nullptr; }  // not LibRaw's to free

  void run() { ahd_interpolate(); }

 private:
  std::unique_ptr<ushort[][4]> pixels_;
};

Prepare adaptive(size_t bytesPerSample) {
  return [=](const Call& call) -> std::function<void()> {
    omp_set_num_threads(1);
    const auto raw = std::make_shared<Interpolation>(call, bytesPerSample);
    return [=] { raw->run(); };
  };
}

const PeerTable table("LibRaw", {
                                    {{"kipiDemosaicAHD_8u_C1C3R"}, "ahd_interpolate", Result::kExact, adaptive(1)},
                                    {{"kipiDemosaicAHD_16u_C1C3R"}, "ahd_interpolate", Result::kExact, adaptive(2)},
                                });

}  // namespace
}  // namespace bench
