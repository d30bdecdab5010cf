#pragma once

#include <QString>

/// A sentence of the picture readers, such as "not a picture but a PDF document; save it as SVG or PNG", in
/// the user's language. One without a translation stays as it is: the command line says the same sentences,
/// in English.
QString inUsersLanguage(const QString& sentence);

/// `words` with a capital letter in front and a full stop at the end.
QString asSentence(QString words);
