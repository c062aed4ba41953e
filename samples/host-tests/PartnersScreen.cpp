#include "PartnersScreen.h"

namespace
{

QString sentenceFor(rest::RestReplyStatus const& status)
{
    if (status.kind == 1)
    {
        return QStringLiteral("KELO cannot be reached. Is this computer online?");
    }
    if (status.retryAfter)
    {
        return QStringLiteral("KELO is busy. Try again in %1 seconds.").arg(status.retryAfter->count());
    }
    return QStringLiteral("KELO refused: %1").arg(kelo::errorMessage(status));
}

} // namespace

PartnersScreen::PartnersScreen(TessalyConnectionInterface const& connection, QString installation)
    : connection_(connection), installation_(std::move(installation))
{
}

PartnersScreen::~PartnersScreen()
{
    reply_.cancel();
}

void PartnersScreen::load()
{
    if (state_ == State::Loading)
    {
        return;
    }
    setState(State::Loading);
    reply_ = connection_.getPartners(installation_, false);
    reply_.then(this, [this](threading::Future<Partners> const& finished) { show(finished); });
}

void PartnersScreen::show(threading::Future<Partners> const& finished)
{
    if (finished.isCanceled())
    {
        setState(State::Failed, QStringLiteral("The connection was closed."));
        return;
    }
    Partners const reply = finished.get();
    if (reply.status.kind != 0)
    {
        setState(State::Failed, sentenceFor(reply.status));
        return;
    }
    names_.clear();
    for (PartnerInfo const& partner : reply.value)
    {
        names_.append(partner.getName());
    }
    setState(names_.isEmpty() ? State::Empty : State::Shown);
}

void PartnersScreen::setState(State state, QString const& error)
{
    state_ = state;
    error_ = error;
    Q_EMIT changed();
}
