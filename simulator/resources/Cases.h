#pragma once

#include "simulator/IdList.h"

#include <QDateTime>
#include <QJsonArray>
#include <QString>
#include <QStringList>

#include <vector>

namespace simulator
{

struct Answer;
struct Call;
struct Route;
struct State;

/// A patient's case on the web portal.
struct PortalCase
{
    QString id = {};
    QString installation = {}; // that created it
    QString patientId = {};
    QString name = {};
    QString status = {};
    QString createdBy = {};
    QDateTime createdAt = {};
    QStringList sharedWith = {}; // names of sites and partners
    QJsonArray files = {};       // as they were announced, each with the "Id" of its upload
};

using Cases = IdList<PortalCase>;

/// The portal's cases: creating them, announcing more files, listing those of a patient.
std::vector<Route> caseRoutes();
void seedCases(State& state);

/// The case; throws a Refusal when there is none, or when it was neither created by the installation nor shared with
/// it.
PortalCase& caseVisibleTo(State& state, QString const& installation, QString const& caseId);

/// Control: all cases with the files announced to them, oldest first.
Answer storedCases(Call const& call);

} // namespace simulator
