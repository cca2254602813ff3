// The example that develops raw files, on DNG files that are written here: patches of known colours, behind each Bayer
// pattern, with a black level, a camera's own colours and white, and borders that are not part of the picture.

#include <gtest/gtest.h>
#include <png.h>
#include <unistd.h>

#include <array>
#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <fstream>
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

/// Bytes in little-endian order.
class Bytes {
 public:
  template <class T>
  void put(T value) {
    for (size_t i = 0; i < sizeof value; ++i) bytes_ += static_cast<char>(static_cast<uint64_t>(value) >> 8 * i);
  }
  void append(const std::string& more) { bytes_ += more; }
  const std::string& string() const { return bytes_; }

 private:
  std::string bytes_;
};

enum Type : uint16_t { kByte = 1, kText = 2, kShort = 3, kLong = 4, kRatio = 5, kSignedRatio = 10 };

/// A TIFF file of one directory, from entries in ascending order of their tags.
class Tiff {
 public:
  void add(uint16_t tag, Type type, const std::vector<int>& values) {
    Bytes data;
    for (const int value : values) {
      if (type == kByte) data.put(static_cast<uint8_t>(value));
      if (type == kShort) data.put(static_cast<uint16_t>(value));
      if (type == kLong) data.put(static_cast<uint32_t>(value));
    }
    entries_.push_back({tag, type, values.size(), data.string()});
  }
  void addText(uint16_t tag, const std::string& text) {
    entries_.push_back({tag, kText, text.size() + 1, text + '\0'});
  }
  void addRatios(uint16_t tag, Type type, const std::vector<Color>& values) {
    Bytes data;
    for (const Color& three : values) {
      for (const double value : three) {
        data.put(static_cast<int32_t>(std::lround(value * 1000000)));
        data.put(int32_t{1000000});
      }
    }
    entries_.push_back({tag, type, 3 * values.size(), data.string()});
  }

  /// The size of what comes before the samples, whatever values the entries have.
  size_t headSize() const { return write().size(); }
  std::string write() const {
    constexpr uint32_t kHeader = 8, kEntry = 12, kAround = 2 + 4, kInPlace = 4;
    uint32_t end = kHeader + kAround + kEntry * static_cast<uint32_t>(entries_.size());
    Bytes head, tail;
    head.append({'I', 'I', 42, 0});
    head.put(kHeader);
    head.put(static_cast<uint16_t>(entries_.size()));
    for (const Entry& entry : entries_) {
      head.put(entry.tag);
      head.put(static_cast<uint16_t>(entry.type));
      head.put(static_cast<uint32_t>(entry.count));
      std::string data = entry.data;
      if (data.size() > kInPlace) {
        head.put(end);
        data.resize((data.size() + 1) / 2 * 2);
        tail.append(data);
        end += static_cast<uint32_t>(data.size());
      } else {
        data.resize(kInPlace);
        head.append(data);
      }
    }
    head.put(uint32_t{0});
    return head.string() + tail.string();
  }

 private:
  struct Entry {
    uint16_t tag;
    Type type;
    size_t count;
    std::string data;
  };

  std::vector<Entry> entries_;
};

const std::string kColors = "RGB";

/// A pattern is two columns of letters, row by row.
int rowsOf(const std::string& pattern) { return static_cast<int>(pattern.size()) / 2; }
int filterAt(const std::string& pattern, int y, int x) {
  return static_cast<int>(kColors.find(pattern[y % rowsOf(pattern) * 2 + x % 2]));
}

std::string samples(const std::string& pattern) {
  const double brightest = cameraWhite()[1];
  Bytes bytes;
  for (int y = -kTop; y < kRawHeight - kTop; ++y) {
    for (int x = -kLeft; x < kRawWidth - kLeft; ++x) {
      double light = 0;
      if (y >= 0 && x >= 0 && y < kHeight && x < kWidth) {
        const Color& patch = kPatches[y / kPatch * kColumns + x / kPatch];
        light = (kCameraFromXyz * (kXyzFromRgb * patch))[filterAt(pattern, y, x)] / brightest;
      }
      bytes.put(static_cast<uint16_t>(std::lround(kBlack + light * (kWhite - kBlack))));
    }
  }
  return bytes.string();
}

std::string dng(const std::string& pattern, int whiteLevel = kWhite) {
  std::vector<int> filters;
  for (size_t i = 0; i < pattern.size(); ++i) filters.push_back(filterAt(pattern, int(i) / 2, int(i) % 2));
  const auto with = [&](int offset) {
    Tiff tiff;
    const Color white = cameraWhite();
    tiff.add(254, kLong, {0});                           // NewSubfileType: the main image
    tiff.add(256, kLong, {kRawWidth});                   // ImageWidth
    tiff.add(257, kLong, {kRawHeight});                  // ImageLength
    tiff.add(258, kShort, {16});                         // BitsPerSample
    tiff.add(259, kShort, {1});                          // Compression: none
    tiff.add(262, kShort, {32803});                      // PhotometricInterpretation: colour filter array
    tiff.addText(271, "Test");                           // Make
    tiff.addText(272, "Patches");                        // Model
    tiff.add(273, kLong, {offset});                      // StripOffsets
    tiff.add(274, kShort, {1});                          // Orientation
    tiff.add(277, kShort, {1});                          // SamplesPerPixel
    tiff.add(278, kLong, {kRawHeight});                  // RowsPerStrip
    tiff.add(279, kLong, {kRawWidth * kRawHeight * 2});  // StripByteCounts
    tiff.add(284, kShort, {1});                          // PlanarConfiguration
    tiff.add(33421, kShort, {rowsOf(pattern), 2});       // CFARepeatPatternDim
    tiff.add(33422, kByte, filters);                     // CFAPattern, from the origin of ActiveArea
    tiff.add(50706, kByte, {1, 4, 0, 0});                // DNGVersion
    tiff.add(50707, kByte, {1, 1, 0, 0});                // DNGBackwardVersion
    tiff.addText(50708, "Test Patches");                 // UniqueCameraModel
    tiff.add(50714, kLong, {kBlack});                    // BlackLevel
    tiff.add(50717, kLong, {whiteLevel});                // WhiteLevel
    tiff.addRatios(50721, kSignedRatio, {kCameraFromXyz.begin(), kCameraFromXyz.end()});  // ColorMatrix1
    tiff.addRatios(50728, kRatio, {{white[0] / white[1], 1, white[2] / white[1]}});       // AsShotNeutral
    tiff.add(50778, kShort, {21});                                                        // CalibrationIlluminant1: D65
    tiff.add(50829, kLong, {kTop, kLeft, kTop + kHeight, kLeft + kWidth});                // ActiveArea
    return tiff;
  };
  const int head = static_cast<int>(with(0).headSize());
  return with(head).write() + samples(pattern);
}

/// The transfer curve of BT.709, in steps of a byte.
double coded(double light) { return 255 * (light < 0.018 ? 4.5 * light : 1.099 * std::pow(light, 0.45) - 0.099); }

class Raw : public testing::Test {
 protected:
  Raw() { std::filesystem::create_directories(folder_); }
  ~Raw() override { std::filesystem::remove_all(folder_); }

  void write(const std::string& bytes) { std::ofstream(in_, std::ios::binary) << bytes; }
  int develop(const std::string& method) {
    return std::system((std::string(RAW_PROGRAM) + " " + method + " " + in_ + " " + out_ + " 2>" + message_).c_str());
  }
  std::string message() const {
    std::ifstream file(message_);
    return {std::istreambuf_iterator<char>(file), {}};
  }

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
  const std::string folder_ = testing::TempDir() + "raw-" + std::to_string(getpid());
  const std::string in_ = folder_ + "/in.dng", out_ = folder_ + "/out.png", message_ = folder_ + "/message";
};

TEST_F(Raw, ColoursComeOutAsTheyWere) {
  for (const char* pattern : {"RGGB", "BGGR", "GRBG", "GBRG"}) {
    write(dng(pattern));
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
  for (const size_t kept : {size_t{0}, size_t{100}, dng("RGGB").size() / 2}) {
    write(dng("RGGB").substr(0, kept));
    EXPECT_NE(develop("ahd"), 0) << kept;
    EXPECT_NE(message(), "") << kept;
  }
  write(dng("RGGB"));
  EXPECT_NE(develop("best"), 0);
}

TEST_F(Raw, RefusesWhatItCannotDevelop) {
  write(dng("RGGBGRBG"));
  EXPECT_NE(develop("ahd"), 0);
  EXPECT_NE(message().find("not a Bayer pattern"), std::string::npos) << message();
  write(dng("RGGB", kBlack));
  EXPECT_NE(develop("ahd"), 0);
  EXPECT_NE(message().find("black level"), std::string::npos) << message();
}

}  // namespace
