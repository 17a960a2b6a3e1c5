// Compiles with the include paths that the core's target exports and no others: no Qt header may be reachable.
#if __has_include(<QObject>) || __has_include(<QtCore/qobject.h>) || __has_include(<QtWidgets/qwidget.h>)
#error "the core can reach a header of Qt"
#endif
