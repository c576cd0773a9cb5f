#pragma once

#include <QProxyStyle>

/// The system's style, but small icons and the boxes and circles of choices are as large as
/// the texts beside them.
class FontStyle : public QProxyStyle {
  public:
    using QProxyStyle::QProxyStyle;

    int pixelMetric(PixelMetric metric, const QStyleOption* option = nullptr,
                    const QWidget* widget = nullptr) const override;
};
