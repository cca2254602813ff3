#include "kipcc.h"

const KipLibraryVersion* kipccGetLibVersion(void) {
  static const KipLibraryVersion version = {
      6, 1, 137, 754, {'t', '7', 0, 0}, "libkipcct7.so.6.1", "6.1 build 137.56", "Mar 17 2010"};
  return &version;
}
