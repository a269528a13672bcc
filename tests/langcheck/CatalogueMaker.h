#pragma once

#include <QByteArray>
#include <QString>

#include <initializer_list>
#include <random>

/// Makes random deployments.
class CatalogueMaker
{
public:
    explicit CatalogueMaker(quint32 seed)
        : m_random(seed)
    {
    }

    /// Replaces the catalogue and the translations in the folder Lang. Any of them may be missing.
    void makeDeployment();

private:
    QByteArray makeCatalogue();
    void makeTranslations();

    int below(int limit) { return std::uniform_int_distribution<int>(0, limit - 1)(m_random); }
    QString oneOf(std::initializer_list<const char *> texts);
    QString end();
    QString number();
    QString line();

    std::mt19937 m_random;
};
