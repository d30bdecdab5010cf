#pragma once

#include "base/Result.h"
#include "project/proof/ProofSheet.h"

#include <QByteArray>

/// The sheet as one HTML file without scripts: each picture stands in it once, as a data: URI, and nothing is
/// loaded from elsewhere. The same sheet gives the same bytes. NotFound where the program lacks the page's
/// style, OutOfMemory.
Result<QByteArray> proofPage(const ProofSheet& sheet);
