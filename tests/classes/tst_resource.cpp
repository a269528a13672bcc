// Replaces two functions of QtCore, to see what the compiled style sheet passes to Qt when the
// plug-in is loaded and unloaded.

#include "support/TestFile.h"

#include <QtTest>

namespace {

using Resource = QPair<int, const unsigned char *>; // Format and data

// Never destroyed: the style sheet registers itself before globals are constructed, and unregisters
// itself after they are destroyed.
QVector<Resource> &registered()
{
    static auto &resources = *new QVector<Resource>;
    return resources;
}

QVector<Resource> &unregistered()
{
    static auto &resources = *new QVector<Resource>;
    return resources;
}

/// Returns the file in a resource: its length and its bytes.
QByteArray file(const Resource &resource)
{
    return QByteArray(reinterpret_cast<const char *>(resource.second + 4),
                      qFromBigEndian<qint32>(resource.second));
}

} // namespace

bool qRegisterResourceData(int version, const unsigned char * /*tree*/,
                           const unsigned char * /*name*/, const unsigned char *data)
{
    registered().append({version, data});
    return true;
}

bool qUnregisterResourceData(int version, const unsigned char * /*tree*/,
                             const unsigned char * /*name*/, const unsigned char *data)
{
    unregistered().append({version, data});
    return true;
}

class tst_resource : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void registersItselfInFormat3AndForOldVersionsOfQtInFormat1()
    {
        QCOMPARE(registered().size(), 2);
        QCOMPARE(registered().at(0).first, 3);
        QCOMPARE(registered().at(1).first, 1);
    }

    void dataIsTheFile()
    {
        QFile source(testFile(QStringLiteral(STYLE_SHEET)));
        QVERIFY(source.open(QIODevice::ReadOnly));
        const QByteArray bytes = source.readAll();
        QCOMPARE(file(registered().at(0)), bytes);
        QCOMPARE(file(registered().at(1)), bytes);
    }

    void contentHasTheKnownHash()
    {
        // Prevents accidental changes of the file.
        const QByteArray bytes = file(registered().at(0));
        QCOMPARE(bytes.size(), 759);
        QCOMPARE(QCryptographicHash::hash(bytes, QCryptographicHash::Sha256).toHex(),
                 QByteArray("f105a5cc5a83f2c407c057612a76eb5c5b1d3342dc868ef82d38fe59c9ae65d3"));
    }

    void unregistersTheSameData()
    {
        Q_CLEANUP_RESOURCE(style_3);
        Q_CLEANUP_RESOURCE(style_1);
        QCOMPARE(unregistered(), registered());
        Q_INIT_RESOURCE(style_3);
        Q_INIT_RESOURCE(style_1);
        QCOMPARE(registered().size(), 4);
    }
};

QTEST_GUILESS_MAIN(tst_resource)
#include "tst_resource.moc"
