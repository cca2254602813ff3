#include "page.h"

#include <cctype>
#include <cstdio>
#include <fstream>
#include <map>

namespace {

constexpr char kHead[] = R"(<!doctype html>
<html lang="en">
<meta charset="utf-8">
<meta name="viewport" content="width=device-width">
<title>Gallery</title>
<style>
  body { background: #282828; color: #ccc; margin: 2rem auto; padding: 0 2rem; max-width: 96rem;
         font: 15px/1.5 system-ui, sans-serif }
  h1, h2, h3 { font-weight: 600; margin: 2.5rem 0 .25rem; color: #fff }
  h3 { margin-top: 1.75rem; font-size: 1rem }
  p { max-width: 48rem; margin: .25rem 0 }
  .row { display: grid; grid-template-columns: repeat(auto-fit, minmax(18rem, 1fr)); gap: 1.25rem; margin-top: .75rem }
  figure { margin: 0 }
  img { width: 100%; display: block }
  figcaption { margin-top: .4rem; font-size: .87rem }
  figcaption b { color: #fff }
  code { font-size: .8rem; color: #bbb; overflow-wrap: anywhere }
  .figures { float: right; color: #9cf; font-variant-numeric: tabular-nums }
</style>
)";

/// "4:2:0, forward and back" -> "4-2-0-forward-and-back".
std::string fileName(const std::string& title) {
  std::string name;
  for (const unsigned char c : title) {
    if (std::isalnum(c))
      name += static_cast<char>(std::tolower(c));
    else if (!name.empty() && name.back() != '-')
      name += '-';
  }
  return name;
}

std::string format(const char* pattern, double value) {
  char text[64];
  std::snprintf(text, sizeof text, pattern, value);
  return text;
}

std::string measures(const Figure& figure) {
  std::string text;
  if (!std::isnan(figure.psnr)) {
    text += std::isinf(figure.psnr) ? "identical" : format("%.1f dB", figure.psnr);
  }
  if (figure.speed > 0) text += (text.empty() ? "" : " · ") + format("%.0f Mpixel/s", figure.speed);
  return text;
}

std::multimap<int, Family::Show>& families() {
  static std::multimap<int, Family::Show> all;
  return all;
}

}  // namespace

Page::Page(const std::filesystem::path& folder) : folder_(folder) {
  std::filesystem::create_directories(folder);
  html_ << kHead << "<h1>What the conversions do to a picture</h1>\n"
        << "<p>Every picture opens in full size. PSNR is over the R, G and B samples of the whole picture; speed is "
           "that of the function named, the best of several calls.</p>\n";
}

std::filesystem::path Page::finish() {
  endRow();
  const std::filesystem::path file = folder_ / "index.html";
  std::ofstream out(file);
  if (!(out << html_.str() << std::flush)) throw std::runtime_error("cannot write " + file.string());
  return std::filesystem::absolute(file);
}

void Page::section(const std::string& title, const std::string& text) {
  endRow();
  html_ << "<h2>" << title << "</h2>\n<p>" << text << "</p>\n";
  prefix_ = fileName(title);
  pictures_ = 0;
}

void Page::row(const std::string& title, const std::string& text) {
  endRow();
  if (!title.empty()) html_ << "<h3>" << title << "</h3>\n";
  if (!text.empty()) html_ << "<p>" << text << "</p>\n";
  html_ << "<div class=row>\n";
  inRow_ = true;
}

void Page::show(const Figure& figure) {
  const std::string file = prefix_ + "-" + std::to_string(++pictures_) + "-" + fileName(figure.title) + ".png";
  writePng(figure.picture, folder_ / file);
  html_ << "<figure><a href=\"" << file << "\"><img src=\"" << file << "\"></a><figcaption><span class=figures>"
        << measures(figure) << "</span><b>" << figure.title << "</b><br>" << figure.text;
  if (!figure.function.empty()) html_ << " <code>" << figure.function << "</code>";
  html_ << "</figcaption></figure>\n";
}

void Page::endRow() {
  if (inRow_) html_ << "</div>\n";
  inRow_ = false;
}

Family::Family(int place, Show show) { families().emplace(place, show); }

void Family::showAll(Page& page, const Picture& photo) {
  for (const auto& [place, show] : families()) show(page, photo);
}
