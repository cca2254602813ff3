#include <zimg.h>

#include <cstdlib>
#include <memory>

#include "conversions.h"

namespace accuracy {
namespace {

constexpr size_t kPlane = static_cast<size_t>(kSide) * kSide, kAlignment = 64;  // bytes
struct Free {
  void operator()(void* at) const { std::free(at); }
};

zimg_matrix_coefficients_e matrixOf(const Coding& coding) {
  return coding.matrix == kipMatrixBT709    ? ZIMG_MATRIX_BT709
         : coding.matrix == kipMatrixBT2020 ? ZIMG_MATRIX_BT2020_NCL
                                            : ZIMG_MATRIX_ST170_M;
}

zimg_image_format describe(zimg_color_family_e family, zimg_matrix_coefficients_e matrix, bool limited) {
  zimg_image_format format;
  zimg_image_format_default(&format, ZIMG_API_VERSION);
  format.width = format.height = kSide;
  format.pixel_type = ZIMG_PIXEL_BYTE;
  format.depth = 8;
  format.color_family = family;
  format.matrix_coefficients = matrix;
  format.pixel_range = limited ? ZIMG_RANGE_LIMITED : ZIMG_RANGE_FULL;
  return format;
}

/// A graph between aligned planes of memory.
struct Graph {
  std::unique_ptr<zimg_filter_graph, decltype(&zimg_filter_graph_free)> graph;
  std::unique_ptr<Kip8u[], Free> from = planes(3 * kPlane), to = planes(3 * kPlane), scratch = {};

  static std::unique_ptr<Kip8u[], Free> planes(size_t bytes) {
    const size_t whole = (bytes + kAlignment - 1) / kAlignment * kAlignment;
    return std::unique_ptr<Kip8u[], Free>(static_cast<Kip8u*>(std::aligned_alloc(kAlignment, whole)));
  }

  Graph(const zimg_image_format& in, const zimg_image_format& out)
      : graph(zimg_filter_graph_build(&in, &out, nullptr), zimg_filter_graph_free) {
    size_t bytes = 0;
    if (graph) zimg_filter_graph_get_tmp_size(graph.get(), &bytes);
    scratch = planes(bytes);
  }

  void run() {
    zimg_image_buffer_const source = {ZIMG_API_VERSION, {}};
    zimg_image_buffer result = {ZIMG_API_VERSION, {}};
    for (int p = 0; p < 3; ++p) {
      source.plane[p] = {&from[p * kPlane], kSide, ZIMG_BUFFER_MAX};
      result.plane[p] = {&to[p * kPlane], kSide, ZIMG_BUFFER_MAX};
    }
    zimg_filter_graph_process(graph.get(), &source, &result, scratch.get(), nullptr, nullptr, nullptr, nullptr);
  }
};

}  // namespace

Convert zimgConvert(const PictureConversion& conversion) {
  const zimg_image_format rgb = describe(ZIMG_COLOR_RGB, ZIMG_MATRIX_RGB, false);
  const zimg_color_family_e family = conversion.format == kipFormatGray8 ? ZIMG_COLOR_GREY : ZIMG_COLOR_YUV;
  const zimg_image_format yuv = describe(family, matrixOf(conversion.coding), conversion.isLimited());
  const auto graph = conversion.encodes ? std::make_shared<Graph>(rgb, yuv) : std::make_shared<Graph>(yuv, rgb);
  if (!graph->graph) return {};
  return [graph, encodes = conversion.encodes](Pictures& pictures) {
    for (size_t i = 0; i < kPlane; ++i) {
      for (int c = 0; c < 3; ++c)
        graph->from[c * kPlane + i] = encodes ? pictures.rgb()[3 * i + c] : pictures.plane(c)[i];
    }
    graph->run();
    for (size_t i = 0; i < kPlane; ++i) {
      for (int c = 0; c < 3; ++c)
        (encodes ? pictures.plane(c)[i] : pictures.rgb()[3 * i + c]) = graph->to[c * kPlane + i];
    }
  };
}

}  // namespace accuracy
