#include <png.h>

#include <cstdio>
#include <stdexcept>

#include "containers.h"
#include "pictures.h"

namespace {

/// What libpng and the program tell each other. libpng leaves its functions by longjmp when something fails, so that
/// between it and `guarded` there must be no object with a destructor, and no exception may pass through it.
struct Errors {
  char message[256] = "";

  template <class Call>
  void guarded(png_structp png, Call call) {
    if (setjmp(png_jmpbuf(png))) throw std::runtime_error(message);
    call();
  }

  /// For libpng's callbacks: true if nothing was thrown.
  template <class Call>
  bool succeeds(Call call) {
    try {
      call();
      return true;
    } catch (const std::exception& error) {
      std::snprintf(message, sizeof message, "%s", error.what());
      return false;
    }
  }

  static void fail(png_structp png, png_const_charp message) {
    Errors& errors = *static_cast<Errors*>(png_get_error_ptr(png));
    if (message != errors.message) std::snprintf(errors.message, sizeof errors.message, "%s", message);
    png_longjmp(png, 1);
  }
  static void ignore(png_structp, png_const_charp) {}
};

class PngDecoder {
 public:
  explicit PngDecoder(Input& input)
      : input_(input), png_(png_create_read_struct(PNG_LIBPNG_VER_STRING, &errors_, Errors::fail, Errors::ignore)) {
    if (!png_) throw std::bad_alloc();
    try {
      readHeader();
    } catch (...) {
      png_destroy_read_struct(&png_, &info_, nullptr);
      throw;
    }
  }
  ~PngDecoder() { png_destroy_read_struct(&png_, &info_, nullptr); }
  PngDecoder(const PngDecoder&) = delete;

  const KipPicture& picture() const { return picture_; }

  void decode(Frame& frame) {
    const size_t step = frame.shape().step(0);
    for (int pass = 0; pass < passes_; ++pass) {
      for (int y = 0; y < picture_.height; ++y) {
        uint8_t* const row = frame.reserve((y + 1) * step) + y * step;
        errors_.guarded(png_, [&] { png_read_row(png_, row, nullptr); });
      }
    }
    errors_.guarded(png_, [&] { png_read_end(png_, nullptr); });
  }

 private:
  static void read(png_structp png, png_bytep to, size_t size) {
    PngDecoder& decoder = *static_cast<PngDecoder*>(png_get_io_ptr(png));
    const bool done = decoder.errors_.succeeds([&] {
      if (decoder.input_.read(to, size) < size) throw std::runtime_error("it is cut short");
    });
    if (!done) png_error(png, decoder.errors_.message);
  }

  void readHeader() {
    errors_.guarded(png_, [&] {
      info_ = png_create_info_struct(png_);
      if (!info_) png_error(png_, "out of memory");
      png_set_read_fn(png_, this, read);
      png_read_info(png_, info_);
      png_set_expand(png_);
      png_set_swap(png_);
      if (png_get_color_type(png_, info_) == PNG_COLOR_TYPE_GRAY_ALPHA || hasTransparentGrey()) {
        png_set_gray_to_rgb(png_);
      }
      passes_ = png_set_interlace_handling(png_);
      png_read_update_info(png_, info_);
    });
    picture_.width = png_get_image_width(png_, info_);
    picture_.height = png_get_image_height(png_, info_);
    picture_.format = formatOf(png_get_color_type(png_, info_), png_get_bit_depth(png_, info_) == 16);
  }

  bool hasTransparentGrey() const {
    return png_get_color_type(png_, info_) == PNG_COLOR_TYPE_GRAY && png_get_valid(png_, info_, PNG_INFO_tRNS);
  }

  static KipFormat formatOf(int colorType, bool isDeep) {
    if (colorType == PNG_COLOR_TYPE_GRAY) return isDeep ? kipFormatGray16 : kipFormatGray8;
    if (colorType == PNG_COLOR_TYPE_RGB) return isDeep ? kipFormatRGB48 : kipFormatRGB24;
    return isDeep ? kipFormatRGBA64 : kipFormatRGBA;
  }

  Input& input_;
  Errors errors_;
  png_structp png_;
  png_infop info_ = nullptr;
  int passes_ = 1;
  KipPicture picture_ = Stream().picture;
};

class PngEncoder {
 public:
  explicit PngEncoder(Output& output)
      : output_(output), png_(png_create_write_struct(PNG_LIBPNG_VER_STRING, &errors_, Errors::fail, Errors::ignore)) {
    if (!png_) throw std::bad_alloc();
  }
  ~PngEncoder() { png_destroy_write_struct(&png_, &info_); }
  PngEncoder(const PngEncoder&) = delete;

  void encode(const KipPicture& picture, const Frame& frame) {
    const KipFormatInfo& format = *kipFormatInfo(picture.format);
    const int colorType = format.family == kipFamilyGray ? PNG_COLOR_TYPE_GRAY
                          : format.hasAlpha              ? PNG_COLOR_TYPE_RGB_ALPHA
                                                         : PNG_COLOR_TYPE_RGB;
    errors_.guarded(png_, [&] {
      info_ = png_create_info_struct(png_);
      if (!info_) png_error(png_, "out of memory");
      png_set_write_fn(png_, this, write, flush);
      png_set_IHDR(png_, info_, picture.width, picture.height, format.bits[0], colorType, PNG_INTERLACE_NONE,
                   PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
      png_write_info(png_, info_);
      png_set_swap(png_);
      for (int y = 0; y < picture.height; ++y) png_write_row(png_, frame.plane(0) + y * frame.shape().step(0));
      png_write_end(png_, nullptr);
    });
  }

 private:
  static void write(png_structp png, png_bytep bytes, size_t size) {
    PngEncoder& encoder = *static_cast<PngEncoder*>(png_get_io_ptr(png));
    if (!encoder.errors_.succeeds([&] { encoder.output_.write({bytes, size}); })) {
      png_error(png, encoder.errors_.message);
    }
  }
  static void flush(png_structp) {}

  Output& output_;
  Errors errors_;
  png_structp png_;
  png_infop info_ = nullptr;
};

KipFormat formatFor(KipFormat format) {
  const KipFormatInfo& info = *kipFormatInfo(format);
  const bool isDeep = info.bits[0] > 8;
  if (info.family == kipFamilyGray) return isDeep ? kipFormatGray16 : kipFormatGray8;
  if (info.hasAlpha) return isDeep ? kipFormatRGBA64 : kipFormatRGBA;
  return isDeep ? kipFormatRGB48 : kipFormatRGB24;
}

}  // namespace

const Container kPng = {
    .name = "png",
    .extensions = " .png ",
    .recognises =
        [](Input& input) {
          constexpr size_t kSignature = 8;
          const auto begin = input.peek(kSignature);
          return begin.size() == kSignature && png_sig_cmp(begin.data(), 0, kSignature) == 0;
        },
    .read = [](Input& input) -> std::unique_ptr<Reader> { return std::make_unique<PictureReader<PngDecoder>>(input); },
    .formatFor = formatFor,
    .write = [](const std::string& name, const Stream& stream) -> std::unique_ptr<Writer> {
      return std::make_unique<PictureWriter>(name, stream.picture,
                                             [](const KipPicture& picture, const Frame& frame, Output& output) {
                                               PngEncoder(output).encode(picture, frame);
                                             });
    },
};
