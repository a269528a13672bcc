#pragma once

#include <QMetaProperty>
#include <QStringList>

/// Returns the names of the properties in which @p object differs from @p other, and of its dynamic
/// properties. Ignores position, size and properties that can't be set or compared.
inline QString differingProperties(const QObject &object, const QObject &other)
{
    const QList<QByteArray> ignored = {"geometry", "pos", "size", "frameRect"};
    QByteArrayList result;
    const QMetaObject &meta = *other.metaObject();
    for (int i = 0; i < meta.propertyCount(); ++i) {
        const QMetaProperty property = meta.property(i);
        if (property.isWritable() && property.userType() != QMetaType::UnknownType
            && !ignored.contains(property.name())
            && property.read(&object) != property.read(&other))
            result += property.name();
    }
    return QString::fromLatin1((result + object.dynamicPropertyNames()).join(' '));
}
