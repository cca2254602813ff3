// The gallery's page: sections of rows of figures, each with what its functions made, how fast and how exact.
#pragma once

#include <algorithm>
#include <chrono>
#include <cmath>
#include <filesystem>
#include <sstream>
#include <stdexcept>
#include <string>

#include "picture.h"

/// What stands under a picture. Times and PSNR left out are not shown.
struct Figure {
  const Picture& picture;
  std::string title;
  std::string text = {};      ///< a sentence, HTML
  std::string function = {};  ///< what made the picture
  double speed = 0;           ///< Mpixel/s
  double psnr = std::nan("");
};

class Page {
 public:
  explicit Page(const std::filesystem::path& folder);

  void section(const std::string& title, const std::string& text);
  /// Figures that follow stand side by side.
  void row(const std::string& title, const std::string& text = {});
  void show(const Figure& figure);
  /// Writes index.html and returns its path.
  std::filesystem::path finish();

 private:
  void endRow();

  std::filesystem::path folder_;
  std::ostringstream html_;
  std::string prefix_;
  int pictures_ = 0;
  bool inRow_ = false;
};

/// Calls a function until it has been timed well and returns its best speed in Mpixel/s. Throws when a call fails.
template <class Call>
double speedOf(const Picture& picture, Call call) {
  using Clock = std::chrono::steady_clock;
  constexpr auto kEnough = std::chrono::milliseconds(40);
  const auto begin = Clock::now();
  auto best = Clock::duration::max();
  for (int calls = 0; calls < 3 || Clock::now() - begin < kEnough; ++calls) {
    const auto start = Clock::now();
    const KipStatus status = call();
    best = std::min(best, Clock::now() - start);
    if (status < 0) throw std::runtime_error("a conversion returned status " + std::to_string(status));
  }
  const double seconds = std::chrono::duration<double>(best).count();
  return double(picture.width) * picture.height / 1e6 / seconds;
}

/// A family's part of the page. Each is a constant in a file of its own; `place` orders them.
class Family {
 public:
  using Show = void (*)(Page& page, const Picture& photo);

  Family(int place, Show show);
  /// Calls them all in order.
  static void showAll(Page& page, const Picture& photo);
};
