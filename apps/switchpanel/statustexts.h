// What the analysis says, in the language of the reader.
#pragma once

#include "language.h"

/*!
    The texts of the analysis are part of its interface and come in one language each: status texts and kinds of
   findings in Chinese, most error messages in English. This gives a known text in the language asked for, numbers and
   paths kept, and any other text as it is. A Chinese text is never changed for a Chinese reader.
*/
QString analysisText(const QString &text, Language language);

//! Whether a check's status speaks of a fault. "Not enough data" and "no such messages" do not.
bool isAbnormalStatus(const QString &status);

//! Whether a check's status says that all is well.
bool isNormalStatus(const QString &status);
