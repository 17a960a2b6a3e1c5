#pragma once

#include <QToolButton>
#include <string>

namespace mirvel::ui {

/// Creates a flat button with a symbol (see `IconLoader::symbol`). The title is its tool tip and accessible name. It
/// gets the focus by Tab, but not by a click.
QToolButton* symbolButton(const char* symbol, const std::string& title, QWidget* parent = nullptr);

/// Gives accessible names to the buttons without text that Qt has put into a widget.
void nameButtons(const QWidget& owner, const QString& name);

}  // namespace mirvel::ui
