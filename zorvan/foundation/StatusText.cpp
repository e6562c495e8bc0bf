#include "zorvan/foundation/StatusText.h"

#include <cstddef>
#include <iterator>

#include "zorvan/foundation/Status.h"

namespace Zorvan::Ipp {

namespace {

struct StatusRow {
  std::int32_t code;
  const char* message;
};

constexpr StatusRow statusRows[] = {
#define ZORVAN_IPP_STATUS(code, name, text) {code, #name ": " text},
#define ZORVAN_IPP_PLAIN_STATUS(code, text) {code, text},
#include "zorvan/foundation/StatusTable.def"
};

constexpr bool isAscending() {
  for (std::size_t row = 1; row < std::size(statusRows); ++row) {
    if (statusRows[row - 1].code >= statusRows[row].code) return false;
  }
  return true;
}

constexpr bool hasRow(std::int32_t code) {
  for (const StatusRow& row : statusRows) {
    if (row.code == code) return true;
  }
  return false;
}

static_assert(std::size(statusRows) == 139);
static_assert(isAscending(), "ascending order, no code twice");
static_assert(hasRow(ippStsUnknownStatusCodeErr), "the look-up ends with this row");

}  // namespace

const char* ippStatusText(std::int32_t code) {
  for (;;) {
    for (const StatusRow& row : statusRows) {
      if (row.code == code) return row.message;
    }
    code = ippStsUnknownStatusCodeErr;
  }
}

}  // namespace Zorvan::Ipp
