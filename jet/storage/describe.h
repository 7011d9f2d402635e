#pragma once

#include "jet/storage/catalogueobject.h"
#include "jet/storage/definition.h"
#include "jet/storage/properties.h"
#include "jet/tabledef.h"

namespace jet {

// The table as DAO shows it.
TableDef describeTable(const CatalogueObject& object, const Definition& definition,
                       const Properties& properties);

} // namespace jet
