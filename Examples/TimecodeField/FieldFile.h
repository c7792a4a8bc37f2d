// FieldFile: a field in a file: its value and its formatter in one archive.
#pragma once

#include "FieldModel.h"

namespace field {

// The archive. Restoring throws what derives from std::exception and says what is wrong; the field then stays as it was.
std::string archivedField(const FieldModel& model);
void restoreField(std::string_view archive, FieldModel* model);

// To and from a file. Either says in one line what is wrong where it fails. A failed save leaves the file as it was,
// a failed load the field.
bool saveField(const FieldModel& model, const std::string& path, std::string* error);
bool loadField(const std::string& path, FieldModel* model, std::string* error);

}  // namespace field
