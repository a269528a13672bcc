// Replaces two functions of QtCore, to see what the compiled style sheet passes to Qt when the
// plug-in is loaded and unloaded.

#include <QtTest>

namespace {

/// The data of resources by their format. Never destroyed: the style sheet may register itself
/// before globals are constructed, and unregister itself after they are destroyed.
using Resources = QMultiMap<int, const unsigned char *>;

Resources &registered()
{
    static auto &resources = *new Resources;
    return resources;
}

Resources &unregistered()
{
    static auto &resources = *new Resources;
    return resources;
}

/// Returns the registered file: its length and its bytes.
QByteArray file(int format)
{
    const unsigned char *const data = registered().value(format);
    return QByteArray(reinterpret_cast<const char *>(data + 4), qFromBigEndian<qint32>(data));
}

} // namespace

bool qRegisterResourceData(int version, const unsigned char * /*tree*/,
                           const unsigned char * /*name*/, const unsigned char *data)
{
    registered().insert(version, data);
    return true;
}

bool qUnregisterResourceData(int version, const unsigned char * /*tree*/,
                             const unsigned char * /*name*/, const unsigned char *data)
{
    unregistered().insert(version, data);
    return true;
}

class tst_resource : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void registersItselfInFormat3AndForOldVersionsOfQtInFormat1()
    {
        QCOMPARE(registered().keys(), QList<int>({1, 3}));
    }

    void contentHasTheKnownHash()
    {
        // Prevents accidental changes of the file.
        for (const int format : {1, 3}) {
            const QByteArray bytes = file(format);
            QCOMPARE(bytes.size(), 759);
            QCOMPARE(
                QCryptographicHash::hash(bytes, QCryptographicHash::Sha256).toHex(),
                QByteArray("f105a5cc5a83f2c407c057612a76eb5c5b1d3342dc868ef82d38fe59c9ae65d3"));
        }
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
