#include "support/BundledModel.h"

#include "base/AtomicFile.h"
#include "support/ModelFixtures.h"

namespace lumaphone::test {

namespace {

const QByteArray licence = R"(The files of this folder are made for tests and know nothing.

MIT License

Copyright (c) 2026 The Lumaphone developers

Permission is hereby granted, free of charge, to any person obtaining a copy
of this software and associated documentation files (the "Software"), to deal
in the Software without restriction, including without limitation the rights
to use, copy, modify, merge, publish, distribute, sublicense, and/or sell
copies of the Software, and to permit persons to whom the Software is
furnished to do so, subject to the following conditions:

The above copyright notice and this permission notice shall be included in all
copies or substantial portions of the Software.

THE SOFTWARE IS PROVIDED "AS IS", WITHOUT WARRANTY OF ANY KIND, EXPRESS OR
IMPLIED, INCLUDING BUT NOT LIMITED TO THE WARRANTIES OF MERCHANTABILITY,
FITNESS FOR A PARTICULAR PURPOSE AND NONINFRINGEMENT. IN NO EVENT SHALL THE
AUTHORS OR COPYRIGHT HOLDERS BE LIABLE FOR ANY CLAIM, DAMAGES OR OTHER
LIABILITY, WHETHER IN AN ACTION OF CONTRACT, TORT OR OTHERWISE, ARISING FROM,
OUT OF OR IN CONNECTION WITH THE SOFTWARE OR THE USE OR OTHER DEALINGS IN THE
SOFTWARE.
)";

struct Shipped
{
    QString role;
    QString name;
    QByteArray bytes;
};

QList<Shipped> shippedFiles()
{
    return {{"encoder", "encoder.onnx", noise(3000, 1)}, {"decoder", "decoder.onnx", noise(5000, 2)},
        {"tokens", "tokens.txt", "YQ== 0\n"}, {"vad", "voice-detector.onnx", noise(700, 3)},
        {"licence", "LICENSE", licence}};
}

} // namespace

ModelEntry bundledModel()
{
    ModelEntry entry;
    entry.id = "english-speech";
    entry.kind = ModelKind::speech;
    entry.title = "英文的語音辨識";
    entry.languages = QStringList {"en"};
    entry.licence.text = "MIT 授權。";
    entry.isBundled = true;
    for (const Shipped &file : shippedFiles()) {
        entry.bundledFiles.append({file.role, file.name, file.bytes.size(), sha256Of(file.bytes)});
    }
    return entry;
}

ModelCatalogue catalogueWithSmallBundle()
{
    QList<ModelEntry> entries = ModelCatalogue::builtIn().entries();
    for (ModelEntry &entry : entries) {
        if (entry.isBundled) {
            entry.bundledFiles = bundledModel().bundledFiles;
        }
    }
    return ModelCatalogue::fromJson(listingOf(entries), "small bundle");
}

void shipBundledModel(const QString &folder)
{
    createFolder(folder + "/english-speech");
    for (const Shipped &file : shippedFiles()) {
        replaceFile(folder + "/english-speech/" + file.name, file.bytes, Durability::renamed);
    }
}

} // namespace lumaphone::test
