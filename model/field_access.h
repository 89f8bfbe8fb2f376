// Reading and writing model fields through their rows of the field tables.
#pragma once

#include <cstdint>

#include "model/field_table.h"
#include "model/panner_plugin.h"

// The storage of a global: a Real's double, an Integer's first of `count` values; null for a row
// of another kind (OptionBits is optionFlags itself).
double* globalReal(PannerPlugin& plugin, GlobalId id);
const double* globalReal(const PannerPlugin& plugin, GlobalId id);
std::int32_t* globalIntegers(PannerPlugin& plugin, GlobalId id);
const std::int32_t* globalIntegers(const PannerPlugin& plugin, GlobalId id);

template <typename Record>
double fieldValue(const RecordField<Record>& field, const Record& record) {
  return field.real != nullptr ? record.*field.real : record.*field.flag;
}

template <typename Record>
double normalisedValue(const RecordField<Record>& field, const Record& record) {
  return normalisedFrom(field.mapping, fieldValue(field, record));
}

// Stores `value` (a flag: nonzero is 1); answers whether the field changed.
template <typename Record>
bool storeField(const RecordField<Record>& field, Record& record, double value) {
  if (field.real != nullptr) {
    if (record.*field.real == value) return false;
    record.*field.real = value;
    return true;
  }
  const std::uint8_t flag = value != 0.0 ? 1 : 0;
  if (record.*field.flag == flag) return false;
  record.*field.flag = flag;
  return true;
}
