#pragma once

#include <QToolButton>
#include <string>

namespace mirvel::ui {

/// A flat button with a symbol (see `IconLoader::symbol`), whose title is its tool tip and what is read out of it. It
/// takes the keys from the Tab key, not from a click.
QToolButton* symbolButton(const char* symbol, const std::string& title, QWidget* parent = nullptr);

/// Names for the ear what Qt put into a widget by itself: the buttons without a text.
void nameButtons(const QWidget& owner, const QString& name);

}  // namespace mirvel::ui
