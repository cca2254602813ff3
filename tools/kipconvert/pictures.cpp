#include "pictures.h"

namespace {

constexpr char kDigits[] = "0123456789";

/// Where the name has %d or %04d; npos if nowhere.
size_t placeOfNumber(const std::string& name) {
  for (size_t at = name.find('%'); at != std::string::npos; at = name.find('%', at + 1)) {
    const size_t end = name.find_first_not_of(kDigits, at + 1);
    if (end != std::string::npos && name[end] == 'd' && end - at - 1 <= 2) return at;
  }
  return std::string::npos;
}

/// out.png -> out%04d.png
std::string suggested(const std::string& name) {
  const size_t dot = name.rfind('.');
  return name.substr(0, dot) + "%04d" + (dot == std::string::npos ? "" : name.substr(dot));
}

}  // namespace

PictureWriter::PictureWriter(const std::string& name, const KipPicture& picture, Encode encode)
    : name_(name), place_(placeOfNumber(name)), picture_(picture), encode_(encode) {
  if (place_ == std::string::npos) output_ = std::make_unique<Output>(name);
}

void PictureWriter::write(const Frame& frame) {
  ++pictures_;
  if (!output_) {
    Output output(numbered(pictures_));
    encode_(picture_, frame, output);
    output.finish();
  } else if (pictures_ == 1 || name_ == "-") {
    encode_(picture_, frame, *output_);
  } else {
    throw std::runtime_error(name_ + " takes one picture, and there are more: write to " + suggested(name_) +
                             ", or add --frames 1");
  }
}

void PictureWriter::finish() {
  if (pictures_ == 0) throw std::runtime_error("there is no picture to write");
  if (output_) output_->finish();
}

std::string PictureWriter::numbered(int number) const {
  const size_t end = name_.find('d', place_);
  const std::string field = name_.substr(place_ + 1, end - place_ - 1);
  const size_t width = field.empty() ? 0 : std::stoi(field);
  std::string digits = std::to_string(number);
  if (digits.size() < width) digits.insert(0, width - digits.size(), '0');
  return name_.substr(0, place_) + digits + name_.substr(end + 1);
}
