// The example that develops raw files, on DNG files that are written here: patches of known colours, behind each Bayer
// pattern, with a black level, a camera's own colours and white, and borders that are not part of the picture.

#include <gtest/gtest.h>
#include <png.h>
#include <tiffio.h>
#include <unistd.h>

#include <array>
#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <memory>
#include <string>
#include <vector>

namespace {

using Color = std::array<double, 3>;
using Matrix = std::array<Color, 3>;

Color operator*(const Matrix& m, const Color& v) {
  Color product = {};
  for (int i = 0; i < 3; ++i) {
    for (int j = 0; j < 3; ++j) product[i] += m[i][j] * v[j];
  }
  return product;
}

// XYZ of linear sRGB with white D65, and a camera's view of XYZ, which sees less red and blue than green.
const Matrix kXyzFromRgb = {
    {{0.4124564, 0.3575761, 0.1804375}, {0.2126729, 0.7151522, 0.0721750}, {0.0193339, 0.1191920, 0.9503041}}};
const Matrix kCameraFromXyz = {{{0.62, -0.13, -0.05}, {-0.42, 1.25, 0.18}, {-0.09, 0.20, 0.58}}};
const Color kPatches[] = {{0.8, 0.8, 0.8}, {0.5, 0.1, 0.1},  {0.1, 0.4, 0.1},
                          {0.1, 0.1, 0.5}, {0.5, 0.4, 0.05}, {0.02, 0.02, 0.02}};

constexpr int kPatch = 32, kColumns = 3, kRows = 2;
constexpr int kTop = 2, kLeft = 6, kWidth = kPatch * kColumns, kHeight = kPatch * kRows;
constexpr int kRawWidth = kLeft + kWidth + 4, kRawHeight = kTop + kHeight + 6;
constexpr int kBlack = 512, kWhite = 16383;

Color cameraWhite() { return kCameraFromXyz * (kXyzFromRgb * Color{1, 1, 1}); }

const std::string kColors = "RGB";

/// The sensor's colour in column x of row y; a pattern is two columns and two rows of letters.
int filterAt(const std::string& pattern, int y, int x) {
  return static_cast<int>(kColors.find(pattern[y % 2 * 2 + x % 2]));
}

std::vector<uint16_t> samples(const std::string& pattern) {
  const double brightest = cameraWhite()[1];
  std::vector<uint16_t> samples;
  for (int y = -kTop; y < kRawHeight - kTop; ++y) {
    for (int x = -kLeft; x < kRawWidth - kLeft; ++x) {
      double light = 0;
      if (y >= 0 && x >= 0 && y < kHeight && x < kWidth) {
        const Color& patch = kPatches[y / kPatch * kColumns + x / kPatch];
        light = (kCameraFromXyz * (kXyzFromRgb * patch))[filterAt(pattern, y, x)] / brightest;
      }
      samples.push_back(static_cast<uint16_t>(std::lround(kBlack + light * (kWhite - kBlack))));
    }
  }
  return samples;
}

void writeDng(const std::string& file, const std::string& pattern, uint32_t whiteLevel = kWhite) {
  const std::unique_ptr<TIFF, void (*)(TIFF*)> tiff(TIFFOpen(file.c_str(), "wl"), TIFFClose);
  const auto set = [&](uint32_t tag, auto... values) { ASSERT_EQ(TIFFSetField(tiff.get(), tag, values...), 1) << tag; };
  set(TIFFTAG_SUBFILETYPE, 0);
  set(TIFFTAG_IMAGEWIDTH, kRawWidth);
  set(TIFFTAG_IMAGELENGTH, kRawHeight);
  set(TIFFTAG_BITSPERSAMPLE, 16);
  set(TIFFTAG_SAMPLESPERPIXEL, 1);
  set(TIFFTAG_ROWSPERSTRIP, kRawHeight);
  set(TIFFTAG_COMPRESSION, COMPRESSION_NONE);
  set(TIFFTAG_PLANARCONFIG, PLANARCONFIG_CONTIG);
  set(TIFFTAG_ORIENTATION, ORIENTATION_TOPLEFT);
  set(TIFFTAG_MAKE, "Test");
  set(TIFFTAG_MODEL, "Patches");
  set(TIFFTAG_UNIQUECAMERAMODEL, "Test Patches");
  set(TIFFTAG_DNGVERSION, "\1\4\0\0");
  set(TIFFTAG_DNGBACKWARDVERSION, "\1\1\0\0");

  set(TIFFTAG_PHOTOMETRIC, PHOTOMETRIC_CFA);
  const uint16_t twoByTwo[] = {2, 2};
  set(TIFFTAG_CFAREPEATPATTERNDIM, twoByTwo);
  uint8_t filters[4];  // from the origin of the active area
  for (int i = 0; i < 4; ++i) filters[i] = static_cast<uint8_t>(filterAt(pattern, i / 2, i % 2));
  set(TIFFTAG_CFAPATTERN, 4, filters);
  const uint32_t active[] = {kTop, kLeft, kTop + kHeight, kLeft + kWidth};
  set(TIFFTAG_ACTIVEAREA, active);
  const float black = kBlack;
  set(TIFFTAG_BLACKLEVEL, 1, &black);
  set(TIFFTAG_WHITELEVEL, 1, &whiteLevel);

  constexpr int kD65 = 21;
  set(TIFFTAG_CALIBRATIONILLUMINANT1, kD65);
  std::vector<float> matrix;
  for (const Color& row : kCameraFromXyz) matrix.insert(matrix.end(), row.begin(), row.end());
  set(TIFFTAG_COLORMATRIX1, static_cast<int>(matrix.size()), matrix.data());
  const Color white = cameraWhite();
  const float neutral[] = {static_cast<float>(white[0] / white[1]), 1, static_cast<float>(white[2] / white[1])};
  set(TIFFTAG_ASSHOTNEUTRAL, 3, neutral);

  std::vector<uint16_t> raw = samples(pattern);
  ASSERT_NE(TIFFWriteEncodedStrip(tiff.get(), 0, raw.data(), raw.size() * sizeof raw[0]), -1);
}

/// The transfer curve of BT.709, in steps of a byte.
double coded(double light) { return 255 * (light < 0.018 ? 4.5 * light : 1.099 * std::pow(light, 0.45) - 0.099); }

class Raw : public testing::Test {
 protected:
  Raw() { std::filesystem::create_directories(folder_); }
  ~Raw() override { std::filesystem::remove_all(folder_); }

  int develop(const std::string& method) {
    return std::system((std::string(RAW_PROGRAM) + " " + method + " " + in_ + " " + out_ + " 2>" + message_).c_str());
  }
  std::string message() const {
    std::ifstream file(message_);
    return {std::istreambuf_iterator<char>(file), {}};
  }

  const std::string folder_ = testing::TempDir() + "raw-" + std::to_string(getpid());
  const std::string in_ = folder_ + "/in.dng";

  struct Png {
    int width, height;
    std::vector<uint8_t> pixels;
  };
  Png read() const {
    png_image png = {};
    png.version = PNG_IMAGE_VERSION;
    EXPECT_TRUE(png_image_begin_read_from_file(&png, out_.c_str()));
    png.format = PNG_FORMAT_RGB;
    Png result = {static_cast<int>(png.width), static_cast<int>(png.height), std::vector<uint8_t>(PNG_IMAGE_SIZE(png))};
    EXPECT_TRUE(png_image_finish_read(&png, nullptr, result.pixels.data(), 0, nullptr));
    return result;
  }

 private:
  const std::string out_ = folder_ + "/out.png", message_ = folder_ + "/message";
};

TEST_F(Raw, ColoursComeOutAsTheyWere) {
  for (const char* pattern : {"RGGB", "BGGR", "GRBG", "GBRG"}) {
    writeDng(in_, pattern);
    for (const char* method : {"linear", "ahd"}) {
      SCOPED_TRACE(std::string(pattern) + " " + method);
      ASSERT_EQ(develop(method), 0) << message();
      const Png png = read();
      ASSERT_EQ(png.width, kWidth);
      ASSERT_EQ(png.height, kHeight);
      constexpr int kInside = 4;  // from here the patches' edges have no influence
      for (int y = 0; y < kHeight; ++y) {
        for (int x = 0; x < kWidth; ++x) {
          const int inX = x % kPatch, inY = y % kPatch;
          if (std::min(inX, inY) < kInside || std::max(inX, inY) >= kPatch - kInside) continue;
          for (int c = 0; c < 3; ++c) {
            ASSERT_NEAR(png.pixels[(size_t(y) * kWidth + x) * 3 + c],
                        coded(kPatches[y / kPatch * kColumns + x / kPatch][c]), 1)
                << x << ", " << y << ", channel " << c;
          }
        }
      }
    }
  }
}

TEST_F(Raw, RefusesWhatIsNoRawFile) {
  writeDng(in_, "RGGB");
  const uintmax_t whole = std::filesystem::file_size(in_);
  for (const uintmax_t kept : {whole / 2, uintmax_t{100}, uintmax_t{0}}) {
    std::filesystem::resize_file(in_, kept);
    EXPECT_NE(develop("ahd"), 0) << kept;
    EXPECT_NE(message(), "") << kept;
  }
  writeDng(in_, "RGGB");
  EXPECT_NE(develop("best"), 0);
}

TEST_F(Raw, RefusesWhatItCannotDevelop) {
  writeDng(in_, "RGBG");
  EXPECT_NE(develop("ahd"), 0);
  EXPECT_NE(message().find("not a Bayer pattern"), std::string::npos) << message();
  writeDng(in_, "RGGB", kBlack);
  EXPECT_NE(develop("ahd"), 0);
  EXPECT_NE(message().find("black level"), std::string::npos) << message();
}

}  // namespace
