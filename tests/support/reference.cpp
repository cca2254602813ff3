#include "support/reference.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace kip {

Pixels8::Pixels8(const Function& function, Side side, Content& content) {
  const Layout& layout = function.layout(side);
  const std::string& space = side == Side::kSource ? function.parts.source : function.parts.destination;
  const bool reverse = !layout.planar && space.rfind("BGR", 0) == 0;
  pixelBytes_ = layout.planar ? 1 : layout.channels;
  rowBytes_ = content[0].plane.rowBytes;
  for (int c = 0; c < layout.channels; ++c) {
    channel_[c] = layout.planar ? content[c].bytes.data() : content[0].bytes.data() + (reverse && c < 3 ? 2 - c : c);
  }
}

Content untouched(const Function& function, Side side, KipiSize size) {
  Content content;
  for (const Plane& plane : function.planes(side, size)) {
    content.push_back({plane, std::vector<uint8_t>(static_cast<size_t>(plane.rowBytes) * plane.rows, kFill)});
  }
  return content;
}

void expectEqual(const Content& result, const Content& expected, const std::string& what) {
  ASSERT_EQ(result.size(), expected.size()) << what;
  for (size_t p = 0; p < result.size(); ++p) {
    const std::vector<uint8_t>&is = result[p].bytes, &should = expected[p].bytes;
    ASSERT_EQ(is.size(), should.size()) << what;
    if (is == should) continue;
    const auto at = std::mismatch(is.begin(), is.end(), should.begin());
    const auto byte = at.first - is.begin();
    const int rowBytes = result[p].plane.rowBytes;
    FAIL() << what << ": plane " << p << " row " << byte / rowBytes << " byte " << byte % rowBytes << " is "
           << int{*at.first} << " instead of " << int{*at.second};
  }
}

void forAllColours(int width, const std::function<void(const PixelImage&)>& with, int oneOf) {
#ifdef __SANITIZE_ADDRESS__
  const int stride = std::max(oneOf, 61);
#else
  const int stride = oneOf;
#endif
  constexpr int kColours = 1 << 24, kPixels = 1 << 16;
  PixelImage image = {{width, std::max(2, kPixels / width)}, {}};
  image.pixels.resize(static_cast<size_t>(width) * image.size.height);
  for (int colour = 0; colour < kColours;) {
    for (Pixel& pixel : image.pixels) {
      pixel = {colour >> 16 & 255, colour >> 8 & 255, colour & 255};
      colour += stride;
    }
    with(image);
  }
}

}  // namespace kip
