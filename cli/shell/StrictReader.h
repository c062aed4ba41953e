#pragma once

#include <vector>

#include <QByteArray>
#include <QJsonObject>
#include <QString>

#include <KeloCommunicationLib/json/RecordSchema.h>

#include "cli/shell/Outcome.h"

namespace cli
{

/// What may stand at one place of a JSON text that people write.
struct Form
{
    QString key = {}; ///< of a member
    jsonSerializer::ValueKind kind = jsonSerializer::ValueKind::Text;
    jsonSerializer::WireForm wire = jsonSerializer::WireForm::Usual;
    bool isRequired = false;
    bool isId = false;                                  ///< a text that is to fill a place in a path
    QString otherwise = {};                             ///< what a missing member counts as; null: it stays out
    std::vector<jsonSerializer::NamedValue> names = {}; ///< of an enumeration
    std::vector<Form> parts = {};                       ///< the members of a record; the one form of a list's elements

    /// The member of that key, made if there is none.
    Form& operator[](QStringView memberKey);
    void remove(QStringView memberKey);
};

/// The form of everything that has this schema; no member is required.
Form formOf(jsonSerializer::ValueSchema const& schema);

/// What has to stand at the place, e.g. "a whole number"; of a list, what its elements are.
QString wantedText(Form const& form);

/// The members' keys, those of nested records behind them, e.g. "{Name, Files[{Id}]}".
QString membersText(Form const& form);

/// A place in a text, for messages.
class Place
{
public:
    explicit Place(QString const& source) : source_(source) {}

    Place member(QString const& key) const { return {source_, path_.isEmpty() ? key : path_ + u'.' + key}; }

    Place element(qsizetype index) const { return {source_, QStringLiteral("%1[%2]").arg(path_).arg(index)}; }

    Failure mistake(QString const& text) const;
    /// As above, with a line and a column.
    Failure mistakeAt(QString const& position, QString const& text) const;

private:
    Place(QString const& source, QString const& path) : source_(source), path_(path) {}

    QString source_;
    QString path_;
};

/// Reads the object that a text holds, as `jsonSerializer::fromDescription` takes it. Nothing that was written gets
/// lost: a text that is no JSON, a member that is unknown, of another kind or given twice, and a required one that is
/// missing are each a Failure that names the source (a file or an argument), the line and the column, and the member.
QJsonObject readStrictly(QString const& source, QByteArray const& text, Form const& form);

} // namespace cli
