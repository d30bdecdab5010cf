#pragma once

#include "base/Result.h"
#include "project/proof/ProofSheet.h"

#include <QString>

/// Whether a proof sheet can be written to a file of that name: it ends with ".png" or ".html".
bool isProofName(const QString& path);

/// Writes `sheet` to the file at `path`, whole or not at all, in the form that its ending tells. EmptySize
/// where the sheet has no icon, else as `proofPage`, `drawnProof` and AtomicFile.
Result<Done> writeProof(const ProofSheet& sheet, const QString& path);
