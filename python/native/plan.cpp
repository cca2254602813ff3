#include "plan.h"

#include <cstring>
#include <list>
#include <memory>
#include <vector>

#include "frame.h"
#include "image.h"
#include "keywords.h"

namespace kip::python {
namespace {

constexpr Word kMatrices[] = {{"", kipMatrixUnspecified},
                              {"bt709", kipMatrixBT709},
                              {"bt601", kipMatrixBT601},
                              {"bt2020", kipMatrixBT2020},
                              {"ycgco", kipMatrixYCgCo}};
constexpr Word kRanges[] = {{"", kipRangeUnspecified}, {"limited", kipRangeLimited}, {"full", kipRangeFull}};
constexpr Word kSites[] = {
    {"", kipSiteUnspecified}, {"left", kipSiteLeft}, {"center", kipSiteCenter}, {"topleft", kipSiteTopLeft}};
constexpr Word kDithers[] = {{"", kipDitherNone}, {"ordered", kipDitherBayer}};
constexpr Word kFilters[] = {{"", kipChromaLinear}, {"linear", kipChromaLinear}, {"nearest", kipChromaNearest}};
constexpr Word kDemosaics[] = {{"", kipDemosaicBilinear}, {"bilinear", kipDemosaicBilinear}, {"ahd", kipDemosaicAHD}};

/// The arguments of convert. Those up to the formats may be given by place.
enum Argument {
  kSource,
  kFrom,
  kTo,
  kSize,
  kMatrix,
  kRange,
  kSite,
  kToMatrix,
  kToRange,
  kToSite,
  kDither,
  kChroma,
  kDemosaic,
  kOut,
  kThreads,
  kArguments
};
constexpr const char* kNames[kArguments] = {"source", "source_format", "result_format", "size",     "matrix",
                                            "range",  "site",          "to_matrix",     "to_range", "to_site",
                                            "dither", "chroma",        "demosaic",      "out",      "threads"};
constexpr int kByPlace = 3;

struct Given {
  PyObject* value[kArguments] = {};

  Given(const char* function, PyObject* const* values, Py_ssize_t positional, PyObject* names) {
    static const Keywords keywords(kNames);
    if (positional > kByPlace) {
      PyErr_Format(PyExc_TypeError, "%s() takes 3 positional arguments, but %zd were given", function, positional);
      throw Raised();
    }
    std::copy_n(values, positional, value);
    const Py_ssize_t count = names ? PyTuple_GET_SIZE(names) : 0;
    for (Py_ssize_t i = 0; i < count; ++i) {
      const int which = keywords.find(PyTuple_GET_ITEM(names, i));
      if (which == kArguments || value[which]) raiseUnexpected(function, PyTuple_GET_ITEM(names, i));
      value[which] = values[positional + i];
    }
    for (int i = 0; i < kByPlace; ++i) {
      if (!value[i]) raiseMissing(function, kNames[i]);
    }
    for (PyObject*& v : value) {
      if (!v) v = Py_None;
    }
  }

  bool has(Argument argument) const { return value[argument] != Py_None; }
  int word(Argument argument, std::span<const Word> words) const {
    return valueOf(value[argument], words, kNames[argument]);
  }
};

/// The format of a name. Names that were asked for are remembered.
const KipFormatInfo& formatOf(PyObject* name) {
  static PyObject* const known = owned(PyDict_New()).release();
  if (!PyUnicode_Check(name)) {
    PyErr_SetString(PyExc_TypeError, "formats are given by their names");
    throw Raised();
  }
  if (PyObject* number = PyDict_GetItemWithError(known, name)) {
    return *kipFormatInfo(static_cast<KipFormat>(PyLong_AsLong(number)));
  }
  const char* text = PyUnicode_AsUTF8(name);
  if (!text) throw Raised();
  const KipFormat format = kipFormatByName(text);
  if (format == kipFormatUnknown) {
    throw Refused{kipStatusUnknownFormat, std::string("there is no format '") + text + "'; kipcc.formats has all"};
  }
  const Ref number = owned(PyLong_FromLong(format));
  if (PyDict_SetItem(known, name, number.get()) < 0) throw Raised();
  return *kipFormatInfo(format);
}

std::optional<KipiSize> sizeOf(PyObject* size) {
  if (size == Py_None) return {};
  const Ref sequence = owned(PySequence_Fast(size, "size must be (width, height)"));
  if (PySequence_Fast_GET_SIZE(sequence.get()) != 2) {
    throw Refused{kipStatusBadArgument, "size must be (width, height)"};
  }
  constexpr int kMost = 0x7FFFFFFF;
  return KipiSize{integer(PySequence_Fast_GET_ITEM(sequence.get(), 0), 1, kMost, "size"),
                  integer(PySequence_Fast_GET_ITEM(sequence.get(), 1), 1, kMost, "size")};
}

/// All that makes a plan. No padding: compared by its bytes.
struct Recipe {
  KipPicture from, to;
  int chroma, dither, demosaic, threads;
};

/// What matrix, range and site say holds for pictures of YCbCr and grey. Floats are always full range.
KipPicture pictureOf(const KipFormatInfo& format, KipMatrix matrix, KipRange range, KipChromaSite site) {
  const bool luma = format.family == kipFamilyYCbCr || format.family == kipFamilyGray;
  if (!luma) return {format.format, 0, 0, kipMatrixUnspecified, kipRangeUnspecified, kipSiteUnspecified};
  return {format.format, 0, 0, matrix, format.isFloat ? kipRangeUnspecified : range, site};
}

Recipe recipeOf(const Given& given) {
  const KipFormatInfo& from = formatOf(given.value[kFrom]);
  const KipFormatInfo& to = formatOf(given.value[kTo]);
  const auto pick = [&](Argument first, Argument other, std::span<const Word> words) {
    return given.word(given.has(first) ? first : other, words);
  };
  Recipe recipe;
  std::memset(&recipe, 0, sizeof recipe);
  recipe.from = pictureOf(from, KipMatrix(given.word(kMatrix, kMatrices)), KipRange(given.word(kRange, kRanges)),
                          KipChromaSite(given.word(kSite, kSites)));
  recipe.to = pictureOf(to, KipMatrix(pick(kToMatrix, kMatrix, kMatrices)), KipRange(pick(kToRange, kRange, kRanges)),
                        KipChromaSite(pick(kToSite, kSite, kSites)));
  recipe.dither = given.word(kDither, kDithers);
  recipe.chroma = given.word(kChroma, kFilters);
  recipe.demosaic = given.word(kDemosaic, kDemosaics);
  recipe.threads = given.has(kThreads) ? integer(given.value[kThreads], 0, 1 << 15, "threads") : 1;
  return recipe;
}

using Plan = std::shared_ptr<const KipPlan>;

Plan makePlan(const Recipe& recipe) {
  KipPlanOptions options = {};
  options.size = sizeof options;
  options.chroma = KipChromaFilter(recipe.chroma);
  options.dither = KipDitherType(recipe.dither);
  options.demosaic = KipDemosaic(recipe.demosaic);
  options.threads = recipe.threads;
  KipPlan* plan = nullptr;
  const KipStatus status = kipPlanMake(&recipe.from, &recipe.to, &options, &plan);
  if (status < kipStatusOk) throw Refused{status, ""};
  return Plan(plan, [](const KipPlan* p) { kipPlanFree(const_cast<KipPlan*>(p)); });
}

/// The plan of a recipe. The last ones that were used are kept; the interpreter's lock guards them.
Plan planOf(const Recipe& recipe) {
  constexpr size_t kKept = 32;
  static std::list<std::pair<Recipe, Plan>>& kept = *new std::list<std::pair<Recipe, Plan>>;
  for (auto it = kept.begin(); it != kept.end(); ++it) {
    if (std::memcmp(&it->first, &recipe, sizeof recipe) != 0) continue;
    kept.splice(kept.begin(), kept, it);
    return kept.front().second;
  }
  kept.emplace_front(recipe, makePlan(recipe));
  if (kept.size() > kKept) kept.pop_back();
  return kept.front().second;
}

void setSize(Recipe& recipe, KipiSize size) {
  recipe.from.width = recipe.to.width = size.width;
  recipe.from.height = recipe.to.height = size.height;
}

/// Pictures of up to so many pixels take microseconds, and are converted with the interpreter's lock held.
constexpr npy_intp kSmallPicture = 64 * 64;

/// Runs a plan for a small picture, with memory that is kept for the next one; the lock guards it.
KipStatus runSmall(const KipPlan& plan, const Frame& source, const Frame& result) {
  static std::vector<char>& scratch = *new std::vector<char>(1);
  const size_t bytes = kipPlanScratchBytes(&plan);
  if (scratch.size() < bytes) scratch.resize(bytes);
  return kipPlanRunRows(&plan, &source.planes, &result.planes, 0, source.size.height, scratch.data());
}

KipStatus run(const KipPlan& plan, const Frame& source, const Frame& result) {
  if (npy_intp{source.size.width} * source.size.height <= kSmallPicture) return runSmall(plan, source, result);
  const Unlocked unlocked;
  return kipPlanRun(&plan, &source.planes, &result.planes);
}

PyObject* convertFrame(const Given& given) {
  Recipe recipe = recipeOf(given);
  const Frame source =
      readFrame(*kipFormatInfo(recipe.from.format), given.value[kSource], sizeOf(given.value[kSize]), "source");
  setSize(recipe, source.size);
  const Plan plan = planOf(recipe);
  const KipFormatInfo& to = *kipFormatInfo(recipe.to.format);
  const Frame result =
      given.has(kOut) ? readFrame(to, given.value[kOut], source.size, "out") : makeFrame(to, source.size);
  if (!result.writeable) throw Refused{kipStatusBadArgument, "out is read-only"};
  expectApart(source.arrays(), result.arrays(), false);
  const KipStatus status = run(*plan, source, result);
  if (status < kipStatusOk) throw Refused{status, ""};
  if (status > kipStatusOk) warn("convert", status);
  return given.has(kOut) ? Py_NewRef(given.value[kOut]) : asResult(result.arrays()).release();
}

/// A row of kipcc.formats.
Ref describe(const KipFormatInfo& format) {
  constexpr const char* kFamilies[] = {"grey", "rgb", "ycbcr", "bayer"};
  return owned(Py_BuildValue("(ssssiOOii)", format.name, format.otherNames, format.order, kFamilies[format.family],
                             format.planes, format.hasAlpha ? Py_True : Py_False,
                             format.sourceOnly ? Py_True : Py_False, 1 << format.chromaShiftX,
                             1 << format.chromaShiftY));
}

}  // namespace

PyObject* convert(PyObject*, PyObject* const* given, Py_ssize_t positional, PyObject* names) {
  return guarded("convert", [&] { return convertFrame(Given("convert", given, positional, names)); });
}

PyObject* formats(PyObject*, PyObject*) {
  return guarded("formats", [] {
    Ref all = owned(PyList_New(0));
    for (int i = 1; const KipFormatInfo* format = kipFormatInfo(static_cast<KipFormat>(i)); ++i) {
      if (PyList_Append(all.get(), describe(*format).get()) < 0) throw Raised();
    }
    return all.release();
  });
}

PyObject* formatName(PyObject*, PyObject* name) {
  return guarded("format_of", [&] { return PyUnicode_FromString(formatOf(name).name); });
}

PyObject* planesOf(PyObject*, PyObject* arguments) {
  return guarded("planes_of", [&] {
    PyObject *name, *size;
    if (!PyArg_ParseTuple(arguments, "OO", &name, &size)) throw Raised();
    return describePlanes(formatOf(name), sizeOf(size).value_or(KipiSize{1, 1})).release();
  });
}

const char* const convertDoc =
    "convert(source, source_format, result_format, *, size=None, matrix=None, range=None, site=None, to_matrix=None, "
    "to_range=None, to_site=None, dither=None, chroma='linear', demosaic='bilinear', out=None, threads=1)\n--\n\n"
    "Converts a picture between any two formats, such as 'nv12' and 'rgb24'; kipcc.formats has their names.\n\n"
    "source: an array, anything with the buffer protocol or DLPack on the processor, or a tuple of planes.\n"
    "    One plane: (height, width), or (height, width, samples); packed 4:2:2 has 2 samples a pixel.\n"
    "    Chroma planes: (rows, columns), or (rows, columns, 2) where they hold pairs.\n"
    "    Several planes in one array: one above the other, in rows of the width: 4:2:0 has height * 3 / 2 rows;\n"
    "    (planes, height, width) where all planes are alike.\n"
    "    All samples in one dimension, or an odd size in packed pixels: with size.\n"
    "size: (width, height), where it cannot be read off the shape.\n"
    "matrix: 'bt709', 'bt601', 'bt2020', 'ycgco' of the side that is YCbCr, or of grey; range: 'limited', 'full';\n"
    "    site: 'left', 'center', 'topleft'. to_matrix, to_range, to_site: those of the result, where they differ.\n"
    "    What colours need and nobody says is refused, not guessed.\n"
    "dither: 'ordered' where samples lose bits. chroma: 'linear' or 'nearest'. demosaic: 'bilinear' or 'ahd'.\n"
    "out: where the result goes, in a shape as above, instead of new arrays.\n"
    "threads: how many work at it, the caller included; 0 for as many as kipSetNumThreads has set.\n\n"
    "Returns the result in the shape that is described for sources; a tuple of planes where a size is odd and chroma\n"
    "has planes of its own. Other Python threads run in the meantime, unless the picture is small. Raises kipcc.Error\n"
    "with nothing written.";

const char* const planesDoc =
    "planes_of(format, size, /)\n--\n\n"
    "The shape and the type of each plane of a picture, whose size is (width, height).";

}  // namespace kip::python
