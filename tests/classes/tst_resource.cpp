// Replaces two functions of QtCore, to see what the compiled style sheet passes to Qt when the
// plug-in is loaded and unloaded.

#include "support/TestFile.h"

#include <QtTest>

namespace {

int registrations = 0;
int formatVersion = 0;
const unsigned char *registeredData = nullptr;
const unsigned char *unregisteredData = nullptr;

} // namespace

bool qRegisterResourceData(int version, const unsigned char * /*tree*/,
                           const unsigned char * /*name*/, const unsigned char *data)
{
    ++registrations;
    formatVersion = version;
    registeredData = data;
    return true;
}

bool qUnregisterResourceData(int /*version*/, const unsigned char * /*tree*/,
                             const unsigned char * /*name*/, const unsigned char *data)
{
    unregisteredData = data;
    return true;
}

class tst_resource : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void registersItselfOnceInFormatVersion3()
    {
        QCOMPARE(registrations, 1);
        QCOMPARE(formatVersion, 3);
    }

    void dataIsTheLengthAndTheFile()
    {
        QFile source(testFile(QStringLiteral(STYLE_SHEET)));
        QVERIFY(source.open(QIODevice::ReadOnly));
        const QByteArray bytes = source.readAll();
        const auto size = qFromBigEndian<quint32>(registeredData);
        QCOMPARE(size, quint32(bytes.size()));
        QCOMPARE(QByteArray(reinterpret_cast<const char *>(registeredData + 4), int(size)), bytes);
    }

    void contentHasTheKnownHash()
    {
        // Prevents accidental changes of the file.
        const auto size = qFromBigEndian<qint32>(registeredData);
        QCOMPARE(size, 759);
        const QByteArray bytes(reinterpret_cast<const char *>(registeredData + 4), size);
        QCOMPARE(QCryptographicHash::hash(bytes, QCryptographicHash::Sha256).toHex(),
                 QByteArray("f105a5cc5a83f2c407c057612a76eb5c5b1d3342dc868ef82d38fe59c9ae65d3"));
    }

    void unregistersTheSameData()
    {
        Q_CLEANUP_RESOURCE(style);
        QCOMPARE(unregisteredData, registeredData);
        Q_INIT_RESOURCE(style);
        QCOMPARE(registrations, 2);
    }
};

QTEST_GUILESS_MAIN(tst_resource)
#include "tst_resource.moc"
