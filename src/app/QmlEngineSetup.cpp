#include "app/QmlEngineSetup.h"

#include "app/SymbolImageProvider.h"

#include <QQmlEngine>

namespace lumaphone {

void setUpQmlEngine(QQmlEngine &engine)
{
    engine.addImportPath(QStringLiteral("qrc:/qt/qml"));
    engine.addImageProvider(QStringLiteral("symbol"), new SymbolImageProvider);
}

} // namespace lumaphone
