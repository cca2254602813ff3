// A conversion as a list of stages over lanes: rows of samples of one channel, or of what is between channels.
#pragma once

#include <string>
#include <vector>

#include "colour.h"
#include "formats.h"
#include "kernels.h"
#include "taps.h"

namespace kip::convert {

/// Lanes by number: the source's channels, those that stores read or that are rows of the destination, and others.
constexpr int kSourceLane = 0, kResultLane = 4, kFirstOwnLane = 8, kMostLanes = 32;
/// Samples on both sides of a row of which neighbours are wanted, and the memory for them.
constexpr int kMarginSamples = 8;
constexpr size_t kMarginBytes = 64;

enum class StageKind : uint8_t {
  kRows,
  kColumns,
  kMatrix,
  kScale,
  kFloatMatrix,
  kRound,
  kCopy,
  kFill,
  kDecode,
  kDecodeBytes,
  kEncode,
  kHalve
};

/// One step from lanes to lanes.
struct Stage {
  StageKind kind;
  SampleType from, to;
  MatrixTypes types;  ///< of an integer matrix
  int inputs = 1, outputs = 1;
  int in[3], out[3];                             ///< lanes
  int data = 0;                                  ///< which of the plan's taps, matrices, ...; the value of a fill
  bool margins = false;                          ///< rows whose neighbours are wanted
  int shiftX = 0;                                ///< samples of the results lie every 2^shiftX pixels
  int result = 0;                                ///< the part of the destination that is stored; -1 if none is
  ChromaColumns columns = ChromaColumns::kEach;  ///< of a decoder
  PixelMean mean = PixelMean::kNone;             ///< of an encoder
  int channel = 0;                               ///< of the source, whose rows are halved
};

/// What makes the samples of one grid of the destination: its pixels, or its chroma.
struct Program {
  std::vector<Stage> stages;
  Taps rowTaps[4];  ///< of each channel of the source, from its rows
  bool uses[4];     ///< which of them are lanes as they are
  int shiftY;       ///< rows of the grid lie every 2^shiftY rows
};

/// A plane of the source on its way to lanes.
struct SourcePart {
  Part part;
  bool needed;
  bool cached;  ///< loaded, or copied to have margins; else its rows are the lane
  bool margins;
  int shiftX, shiftY;
  int rowsKept;      ///< a power of two
  size_t laneBytes;  ///< of one lane of a row, with margins
  size_t offset;     ///< in the scratch memory
};

/// Lanes to a plane of the destination.
struct ResultPart {
  Part part;
  int lane[4];
  int shiftX, shiftY;
  bool isStored;  ///< by a stage
};

/// A lane in scratch memory.
struct OwnLane {
  size_t offset;
  SampleType type;
  bool isConstant;
  int value;  ///< of a constant lane
};

/// Demosaicing comes first, in blocks of rows; where samples are unpacked for it, with as many rows around them as
/// its results may depend on.
constexpr int kBayerBlockRows = 16, kBayerMargin = 8;

struct BayerSource {
  KipDemosaic method;
  int grid;
  int packedBits;  ///< 10 or 12 where samples share bytes, else 0
  SampleType type;
  size_t rawOffset, rgbOffset;  ///< in the scratch memory
  size_t rawStep, rgbStep;
};

}  // namespace kip::convert

/// Constant once made.
struct KipPlan {
  const kip::convert::Format *from, *to;
  kip::convert::Meaning fromMeaning, toMeaning;
  kip::convert::Grid fromChroma[2], toChroma[2];  ///< by axis: x, y
  KipChromaFilter chroma;
  KipDitherType dither;
  int width, height, threads;
  int unit;           ///< rows that belong together
  int segment;        ///< pixels of a row that go through all stages at a time
  bool isCopy;        ///< rows as they are
  bool isReordering;  ///< samples of interleaved bytes change places, and nothing else
  uint8_t order[4];
  bool isBayer;
  kip::convert::BayerSource bayer;
  kip::convert::SourcePart sources[4];
  kip::convert::ResultPart results[4];
  int sourceOf[4];  ///< the part that has a channel, and its place there
  int placeOf[4];
  std::vector<kip::convert::Program> programs;
  std::vector<kip::convert::Taps> taps;
  std::vector<kip::convert::IntegerMatrix> matrices;
  std::vector<kip::convert::ByteColours> byteColours;
  std::vector<kip::convert::ByteMatrix> byteMatrices;
  std::vector<kip::convert::FloatMatrix> floatMatrices;
  std::vector<kip::convert::Rounding> roundings;
  std::vector<kip::convert::OwnLane> lanes;  ///< from kFirstOwnLane on
  size_t scratchBytes;
  std::string description;
};

namespace kip::convert {

/// Checks two pictures and the options, and fills in what follows from them: formats, meanings, grids, sizes.
KipStatus checkPlan(const KipPicture& from, const KipPicture& to, const KipPlanOptions* options, KipPlan& plan);

/// Fills in the stages.
void buildStages(KipPlan& plan);

/// Joins neighbouring stages.
void joinStages(KipPlan& plan);

/// Fills in where things lie in the scratch memory, and its size.
void layOutScratch(KipPlan& plan);

/// Fills in the description.
void describe(KipPlan& plan);

/// Rows first to last - 1, with scratch memory that is aligned to 64 bytes.
void runRows(const KipPlan& plan, const KipPlanes& src, const KipPlanes& dst, int first, int last, uint8_t* scratch);

}  // namespace kip::convert
