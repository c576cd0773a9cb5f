#include "platform/fontstyle.h"

#include "platform/fontscale.h"

int FontStyle::pixelMetric(PixelMetric metric, const QStyleOption* option,
                           const QWidget* widget) const {
    const int usual = QProxyStyle::pixelMetric(metric, option, widget);
    switch (metric) {
    // Of buttons and boxes too: the styles ask for it in turn.
    case PM_SmallIconSize:
    case PM_IndicatorWidth:
    case PM_IndicatorHeight:
    case PM_ExclusiveIndicatorWidth:
    case PM_ExclusiveIndicatorHeight:
        return widget == nullptr ? usual : Scaled(usual, *widget);
    default:
        return usual;
    }
}
