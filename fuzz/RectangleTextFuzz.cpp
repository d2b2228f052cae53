#include "Require.h"
#include "base/RectangleText.h"

#include <cmath>
#include <cstddef>
#include <cstdint>

using namespace lumaphone;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QString text
        = QString::fromUtf8(reinterpret_cast<const char *>(data), static_cast<qsizetype>(size));
    const QRectF read = rectangleFromText(text);
    for (const double number : {read.x(), read.y(), read.width(), read.height()}) {
        fuzz::require(std::isfinite(number), "every number is one");
    }
    const QString written = rectangleText(read);
    const QRectF again = rectangleFromText(written);
    fuzz::require(again.x() == read.x() && again.y() == read.y() && again.width() == read.width()
            && again.height() == read.height(),
        "what is written reads back");
    fuzz::require(rectangleText(again) == written, "a rectangle has one text");
    return 0;
}
