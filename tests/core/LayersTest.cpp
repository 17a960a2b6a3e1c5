// Compiles with what the core's target hands on, and nothing more: no header of Qt may be within reach of that.
#if __has_include(<QObject>) || __has_include(<QtCore/qobject.h>) || __has_include(<QtWidgets/qwidget.h>)
#error "the core can reach a header of Qt"
#endif
