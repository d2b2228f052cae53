#include "translation/engine/StudentModel.h"

#include "support/engine/ModelGenerator.h"
#include "support/program/TestProgram.h"

#include <QTest>

#include <cmath>
#include <cstring>
#include <limits>

namespace studentmodeltest {

using namespace lumaphone::engine;
using namespace lumaphone::engine::test;

namespace {

const QString name = QStringLiteral("some model.bin");

std::span<const std::byte> bytesOf(const std::string &text)
{
    return std::as_bytes(std::span(text.data(), text.size()));
}

/// What refuses the bytes, as the case's number, or -1.
int faultOf(const std::string &bytes)
{
    try {
        const StudentModel model(ModelFile(bytesOf(bytes), name));
        return -1;
    } catch (const EngineError &error) {
        if (!error.errorDescription().contains(name) || error.subject().isEmpty())
            qFatal("the error names neither the file nor the reason");
        return int(error.which());
    }
}

ModelShape shapeWith(const std::string &setting)
{
    ModelShape shape;
    shape.extraSettings = {setting};
    return shape;
}

/// The position of a tensor's data within the bytes.
std::size_t positionOf(const std::string &bytes, const char *tensor)
{
    const ModelFile file(bytesOf(bytes), name);
    return std::size_t(reinterpret_cast<const char *>(file.find(tensor)->data.data()) - bytes.data());
}

std::string withFloat(std::string bytes, std::size_t position, float value)
{
    std::memcpy(bytes.data() + position, &value, sizeof value);
    return bytes;
}

} // namespace

class StudentModelTest : public QObject
{
    Q_OBJECT

private slots:
    void theArchitectureIsRead()
    {
        ModelShape shape;
        shape.encoderDepth = 3;
        shape.innerWidth = 192;
        const std::string bytes = generateModel(shape);
        const StudentModel model(ModelFile(bytesOf(bytes), name));
        QCOMPARE(model.settings().width, 64);
        QCOMPARE(model.settings().innerWidth, 192);
        QCOMPARE(model.settings().heads, 8);
        QCOMPARE(model.encoder().size(), std::size_t(3));
        QCOMPARE(model.decoder().size(), std::size_t(2));
        QVERIFY(model.isShared());
        QCOMPARE(model.source().rows, 1000);
        QCOMPARE(model.output().matrix.outputs, 1000);
        QCOMPARE(model.output().matrix.weights, model.target().weights);
    }

    void twoVocabulariesHaveTwoTables()
    {
        ModelShape shape;
        shape.sourceWords = 808;
        const std::string bytes = generateModel(shape);
        const StudentModel model(ModelFile(bytesOf(bytes), name));
        QVERIFY(!model.isShared());
        QCOMPARE(model.source().rows, 808);
        QCOMPARE(model.target().rows, 1000);
    }

    void outputWeightsAreScaledToTheFullRange()
    {
        ModelShape shape;
        shape.greatestWeight = 80;
        const std::string bytes = generateModel(shape);
        const StudentModel model(ModelFile(bytesOf(bytes), name));
        const QuantizedMatrix &output = model.output().matrix;
        QVERIFY(output.weights != model.target().weights);
        for (int index = 0; index < 64000; ++index) {
            const int weight = model.target().weights[index];
            QCOMPARE(int(output.weights[index]), int(std::lround(weight * 127.0 / 80.0)));
        }
        QVERIFY(qFuzzyCompare(output.weightMultiplier, model.target().multiplier * 127.0F / 80.0F));
    }

    void otherArchitecturesAreRefused_data()
    {
        QTest::addColumn<QString>("setting");
        for (const char *setting : {"type: s2s", "transformer-decoder-autoreg: self-attention",
                 "dec-cell: gru", "transformer-ffn-activation: swish", "transformer-ffn-depth: 3",
                 "transformer-preprocess: n", "transformer-postprocess: da", "transformer-postprocess-top: n",
                 "transformer-tied-layers:\n  - 1\n  - 1", "transformer-train-position-embeddings: true",
                 "dim-emb: 100", "dim-emb: 32", "transformer-heads: 7", "enc-depth: 0",
                 "enc-depth: 1000000000", "dec-depth: -3", "transformer-dim-ffn: 99999999"})
            QTest::newRow(setting) << QString::fromLatin1(setting);
    }

    void otherArchitecturesAreRefused()
    {
        QFETCH(QString, setting);
        QCOMPARE(
            faultOf(generateModel(shapeWith(setting.toStdString()))), int(EngineError::Case::unsupported));
    }

    void descriptionsThatAreNoDescriptionsAreRefused()
    {
        QCOMPARE(faultOf(generateModel(shapeWith("dim-emb: many"))), int(EngineError::Case::damaged));
        QCOMPARE(faultOf(generateModel(shapeWith("enc-depth: 99999999999999999999"))),
            int(EngineError::Case::damaged));
        QCOMPARE(
            faultOf(writeModelFile({{"tensor", 0x101, {4}, "wxyz"}})), int(EngineError::Case::notRecognised));
        QCOMPARE(faultOf(writeModelFile({{"special:model.yml", 0x101, {4}, "wxyz"}})),
            int(EngineError::Case::damaged));
    }

    void shapesThatContradictTheDescriptionAreRefused()
    {
        QCOMPARE(faultOf(generateModel(shapeWith("enc-depth: 3"))), int(EngineError::Case::unsupported));
        QCOMPARE(faultOf(generateModel(shapeWith("dim-emb: 128"))), int(EngineError::Case::damaged));
        QCOMPARE(
            faultOf(generateModel(shapeWith("transformer-dim-ffn: 256"))), int(EngineError::Case::damaged));
        ModelShape odd;
        odd.targetWords = 1001;
        QCOMPARE(faultOf(generateModel(odd)), int(EngineError::Case::unsupported));
    }

    void numbersThatMakeNoSenseAreRefused()
    {
        const std::string bytes = generateModel({});
        const float infinity = std::numeric_limits<float>::infinity();
        const std::size_t bias = positionOf(bytes, "encoder_l1_self_bq") + 8;
        QCOMPARE(faultOf(withFloat(bytes, bias, infinity)), int(EngineError::Case::damaged));
        QCOMPARE(faultOf(withFloat(bytes, bias, std::nanf(""))), int(EngineError::Case::damaged));
        const std::size_t multiplier = positionOf(bytes, "Wemb") + 64000;
        for (const float value : {0.0F, -3.0F, infinity, std::nanf(""), 1e-30F, 1e30F})
            QCOMPARE(faultOf(withFloat(bytes, multiplier, value)), int(EngineError::Case::damaged));
        const std::size_t inputs = positionOf(bytes, "encoder_l1_self_Wq_QuantMultA");
        QCOMPARE(faultOf(withFloat(bytes, inputs, 0.0F)), int(EngineError::Case::damaged));
        QCOMPARE(faultOf(bytes), -1);
    }

    void settingLinesAreRead()
    {
        const auto lines = readSettingLines(
            "# remark\nplain: word\r\nquoted: \"\"\nlist:\n  - 1\n  - 2\nempty list:\n  []\n"
            "no colon\n\nlast: a: b");
        QCOMPARE(lines.size(), std::size_t(5));
        QCOMPARE(lines.at("plain"), std::string("word"));
        QCOMPARE(lines.at("quoted"), std::string());
        QCOMPARE(lines.at("list"), std::string("- 1- 2"));
        QCOMPARE(lines.at("empty list"), std::string("[]"));
        QCOMPARE(lines.at("last"), std::string("a: b"));
    }
};

LUMAPHONE_TEST(StudentModelTest)

} // namespace studentmodeltest

#include "StudentModelTest.moc"
