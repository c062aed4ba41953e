#pragma once

#include <QHash>
#include <QString>

#include <utility>
#include <vector>

namespace simulator
{

/// Elements in the order in which they came, found by their id, which does not change.
template <class Element>
class IdList
{
public:
    auto begin() { return elements_.begin(); }
    auto end() { return elements_.end(); }
    auto begin() const { return elements_.begin(); }
    auto end() const { return elements_.end(); }
    bool empty() const { return elements_.empty(); }
    std::size_t size() const { return elements_.size(); }
    Element const& operator[](std::size_t position) const { return elements_[position]; }

    bool contains(QString const& id) const { return positions_.contains(id); }
    /// The size if there is none.
    std::size_t positionOf(QString const& id) const { return positions_.value(id, size()); }
    /// Null if there is none.
    Element* find(QString const& id) { return const_cast<Element*>(std::as_const(*this).find(id)); }
    Element const* find(QString const& id) const
    {
        auto const position = positionOf(id);
        return position == size() ? nullptr : &elements_[position];
    }

    /// References to the others end to be valid.
    Element& add(Element element)
    {
        positions_.insert(element.id, size());
        return elements_.emplace_back(std::move(element));
    }
    void remove(QString const& id)
    {
        std::erase_if(elements_, [&id](Element const& element) { return element.id == id; });
        positions_.clear();
        for (auto const& element : elements_)
        {
            positions_.insert(element.id, static_cast<std::size_t>(positions_.size()));
        }
    }

private:
    std::vector<Element> elements_ = {};
    QHash<QString, std::size_t> positions_ = {};
};

} // namespace simulator
