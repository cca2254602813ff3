// The command line.
#pragma once

#include <optional>
#include <stdexcept>
#include <string>

#include "containers.h"
#include "kipconvert.h"
#include "text.h"

/// A command line that makes no sense; what() says what to write instead.
struct Usage : std::runtime_error {
  using runtime_error::runtime_error;
};

/// What is said of a picture's colours.
struct Colour {
  KipMatrix matrix = kipMatrixUnspecified;
  KipRange range = kipRangeUnspecified;
  KipChromaSite site = kipSiteUnspecified;
};

enum class Action { kConvert, kExplain, kListFormats, kHelp, kVersion };

struct Options {
  Action action = Action::kConvert;
  std::string input = "-", output = "-";
  std::optional<Stream> raw;             ///< what raw frames in the input are
  KipFormat to = kipFormatUnknown;       ///< unknown: what suits the output's container best
  const Container* container = nullptr;  ///< of the output; null is by its name
  Colour fromColour, toColour;
  KipPlanOptions plan = {sizeof(KipPlanOptions), kipChromaLinear, kipDitherNone, kipDemosaicBilinear, 0};
  int threads = 1;  ///< of the conversion, beside those that read and write; 0 is as many as there are processors
  int frames = 0;   ///< how many at most; 0 is all
  bool quiet = false;
};

/// Throws Usage.
Options parseOptions(int argc, char** argv);

extern const char kHelp[];
