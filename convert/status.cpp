#include "kipconvert.h"

const char* kipStatusText(KipStatus status) {
  switch (static_cast<int>(status)) {
    case kipStatusOk:
      return "everything was converted";
    case kipStatusNoOperation:
      return "there was nothing to do, and nothing was written";
    case kipStatusOddSize:
      return "the size is odd; the even part was converted";
    case kipStatusBadArgument:
      return "an argument is outside of what it may be";
    case kipStatusBadSize:
      return "the width or the height is too small or too large";
    case kipStatusNullPointer:
      return "a pointer that is needed is null";
    case kipStatusNoMemory:
      return "there is not enough memory";
    case kipStatusBadStep:
      return "the distance between rows is not positive";
    case kipStatusContextMismatch:
      return "the state of the generator is not one";
    case kipStatusGammaRange:
      return "the range of values is empty";
    case kipStatusDitherLevels:
      return "the number of levels is out of range";
    case kipStatusNoiseRange:
      return "the amount of noise is not within 0..100";
    case static_cast<int>(kipStatusUnknownFormat):
      return "the format is unknown";
    case static_cast<int>(kipStatusSourceOnly):
      return "the format can be converted from, but not to";
    case static_cast<int>(kipStatusSizesDiffer):
      return "the two pictures have different sizes";
    case static_cast<int>(kipStatusNeedsMatrix):
      return "this conversion needs the matrix of the YCbCr or grey picture: say BT.601, BT.709, BT.2020 or YCgCo";
    case static_cast<int>(kipStatusBadMatrix):
      return "the matrix is unknown, or one of YCbCr is given for RGB";
    case static_cast<int>(kipStatusNeedsRange):
      return "this conversion needs the range of the YCbCr picture: say limited or full";
    case static_cast<int>(kipStatusBadRange):
      return "the range is unknown, or limited for floats or for samples of a sensor";
    case static_cast<int>(kipStatusBadSite):
      return "the chroma site is unknown";
    case static_cast<int>(kipStatusBadOptions):
      return "an option has a value that does not exist";
    case static_cast<int>(kipStatusDitherMethod):
      return "this dither method is not for conversions: take none, or ordered (Bayer)";
    case static_cast<int>(kipStatusBadRows):
      return "the rows are outside of the picture, or not whole units of the plan";
    default:
      return "an unknown status";
  }
}
