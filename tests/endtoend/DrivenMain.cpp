// The program as it is shipped, with a driver on its standard input.
#include "endtoend/Driver.h"

#include <QCoreApplication>

int lumaphoneMain(int argc, char *argv[]);

namespace {

void addDriver()
{
    auto *driver = new lumaphone::test::Driver;
    driver->setParent(QCoreApplication::instance());
}

} // namespace

Q_COREAPP_STARTUP_FUNCTION(addDriver)

int main(int argc, char *argv[])
{
    return lumaphoneMain(argc, argv);
}
