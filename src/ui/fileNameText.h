#pragma once

#include <QString>

/// How the names of files and folders, which can hold anything, are told to people and to assistive programs.
namespace fileNameText {

/// A name or path as it can be shown in any text: control characters have a visible form, and letters that
/// run from right to left don't turn round what stands beside the name.
[[nodiscard]] QString displayed(const QString &name);

/// A sentence that quotes a name between two apostrophes, the first and the last in it, with the name as
/// `displayed` has it.
[[nodiscard]] QString displayedInSentence(const QString &sentence);

/// A tooltip of the name and a line below it, as rich text in which nothing of either is markup.
[[nodiscard]] QString toolTip(const QString &name, const QString &details = {});

} // namespace fileNameText
