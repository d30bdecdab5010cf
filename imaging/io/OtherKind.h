#pragma once

#include <QByteArray>
#include <QString>

/// The sentence that refuses a file of a kind that no reader here reads, with what to do instead: "not a
/// picture but a PDF document; save it as SVG or PNG". Its first bytes tell the kind; empty where they tell
/// nothing.
QString refusalOfOtherKind(const QByteArray& bytes);
