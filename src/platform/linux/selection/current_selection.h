#pragma once

#include <QStringList>

#include <functional>
#include <optional>

#include "platform/linux/selection/primary_selection.h"

namespace tralio {

// What the user has selected now, put together from what the focused element says of itself and from PRIMARY,
// which outlives the mark. By trial, after the mark had vanished by a click elsewhere, or by a cursor key:
//
//                       | element with the focus says       | PRIMARY            | events then
// GTK 3                 | GetNSelections 0                  | given up           | selection and caret
// Qt 5, 6               | GetNSelections 0                  | keeps the old text | selection and caret
// LibreOffice           | 0, of its own paragraph only      | given up           | selection and caret
// Firefox ESR           | 0, the document too               | keeps the old text | caret alone
// Chromium, whole tree  | 0, the document too               | keeps the old text | both; none when the click
//                       |                                   |                    | falls on the mark itself
// Chromium, as it is    | there is no element below the     | keeps the old text | none
//                       | window                            |                    |
// xterm, urxvt, st      | not on the bus                    | keeps the old text | none
//
// (Document.GetTextSelections, which AT-SPI knows from 2.52 on, none of them answers to in Debian 12.)
//
// So an element that counts its selections is believed, and the events are not: they come late or never.
// PRIMARY is asked for what the element shows but a part of, within a second of the mark where a page counts
// none yet (Chromium's tree follows late), and where nobody counts. There a press of the mouse, or on X11 of
// a key, since the mark speaks against it; whether something is marked then the application must say itself,
// by what its Copy does. The same holds for what may be a password: Chromium gives the typed text of a
// password field to PRIMARY (GTK 3 gives dots; GTK 4, Firefox and Qt nothing), but copies nothing from such a
// field.

/// What the focused element says of its selection.
struct ElementSelection {
    enum class Answer {
        unknown,  ///< there is no such element, or it knows of no selections
        none,
        some,
    };
    /// Whether an element's text is all that may be selected with it.
    enum class Reach {
        whole,  ///< an input field, a terminal
        part,   ///< a paragraph of a document, or a page, whose other elements show as placeholders in its
                ///< text
    };

    Answer answer = Answer::unknown;
    QString text;
    Reach reach = Reach::part;
};

using AskPrimary = std::function<std::optional<PrimaryText>()>;

/// The selection of an element that has some. PRIMARY, if it holds that part, is the whole. Nothing
/// where it is of an older mark, so that the application has to be asked.
[[nodiscard]] std::optional<QString> selectedTextOf(
    const ElementSelection& element, const AskPrimary& primary);

/// The selection where no element counts: PRIMARY, as long as nothing speaks against it.
[[nodiscard]] std::optional<QString> uncountedSelection(const AskPrimary& primary);

/// The same where the focused element shows no selection.
[[nodiscard]] std::optional<QString> selectionBeside(
    const ElementSelection& element, const AskPrimary& primary);

/// Whether an application is known to give no password to PRIMARY, as terminals are, which show none, and
/// three of the toolkits that were tried. `names` is what it goes by, `toolkit` what it says on the
/// accessibility bus that it is made with; both may be empty.
[[nodiscard]] bool keepsPasswordsToItself(const QStringList& names, const QString& toolkit);

/// Whether an input field of GTK 4 may be one for a password. There such a field has the role and gives the
/// text of any other, but no mark in it gets to PRIMARY, and nothing is copied from it.
[[nodiscard]] bool mayBePasswordOfGtk4(const QString& marked, const AskPrimary& primary);

/// How a text was selected, as far as that was seen.
enum class Marking { unknown, byDoubleClick };
/// Whether a text could be somebody's password: one word, and not one of letters alone that was marked by a
/// double click, as words to look up are.
[[nodiscard]] bool looksLikePassword(const QString& text, Marking marking);

}  // namespace tralio
