#include "app/QmlEngineSetup.h"

#include "app/controls/SymbolImageProvider.h"

#include <QQmlEngine>

// The toolkit's registration of each module.
void qml_register_types_Lumaphone();
void qml_register_types_Lumaphone_Controls();
void qml_register_types_Lumaphone_Diagnosis();
void qml_register_types_Lumaphone_Floating();
void qml_register_types_Lumaphone_Glossary();
void qml_register_types_Lumaphone_Inspector();
void qml_register_types_Lumaphone_Keys();
void qml_register_types_Lumaphone_Library();
void qml_register_types_Lumaphone_Live();
void qml_register_types_Lumaphone_Models();
void qml_register_types_Lumaphone_Shell();
void qml_register_types_Lumaphone_Texts();

namespace lumaphone {

namespace {

using Registration = void (*)();
constexpr Registration registrations[] {
    &qml_register_types_Lumaphone,
    &qml_register_types_Lumaphone_Controls,
    &qml_register_types_Lumaphone_Diagnosis,
    &qml_register_types_Lumaphone_Floating,
    &qml_register_types_Lumaphone_Glossary,
    &qml_register_types_Lumaphone_Inspector,
    &qml_register_types_Lumaphone_Keys,
    &qml_register_types_Lumaphone_Library,
    &qml_register_types_Lumaphone_Live,
    &qml_register_types_Lumaphone_Models,
    &qml_register_types_Lumaphone_Shell,
    &qml_register_types_Lumaphone_Texts,
};

} // namespace

void setUpQmlEngine(QQmlEngine &engine)
{
    // The linker leaves out what nothing refers to.
    for (const Registration registration : registrations) {
        [[maybe_unused]] const volatile Registration referred = registration;
    }
    engine.addImportPath(QStringLiteral("qrc:/qt/qml"));
    engine.addImageProvider(QStringLiteral("symbol"), new SymbolImageProvider);
}

} // namespace lumaphone
