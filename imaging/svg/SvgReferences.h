#pragma once

#include "base/Result.h"
#include "imaging/svg/SvgStyle.h"

#include <QHash>
#include <QString>
#include <QStringList>

#include <array>
#include <cstddef>
#include <optional>
#include <vector>

/// The references between a document's elements. They tell how much a drawing would draw, before anything is
/// drawn: a few elements that refer to each other may stand for billions.
///
/// What is not certain counts as drawn, so the true numbers are never larger.
class SvgReferences {
  public:
    /// The limit for the elements that are drawn, measured in simple elements: this number, and four times
    /// the document's own elements.
    static constexpr double maximumElements = 100000;
    /// The limit for the layers that masks, filters and opacities are drawn on: this number, and four times
    /// the document's own layers.
    static constexpr double maximumLayers = 500;
    /// How deep layers may be nested.
    static constexpr int maximumLayerDepth = 64;
    /// How deep elements and references may be nested: the drawing library recurses into each.
    static constexpr int maximumDepth = 400;
    /// The limit for comparisons of the rules and declarations of style sheets with elements, and for the
    /// links in the elements' paints.
    static constexpr double maximumComparisons = 10e6;

    /// An element opens within the last open one. `work` is how long it alone takes to draw, measured in
    /// simple elements; the time to begin drawing it is added.
    void open(const QString& name, double work);
    void close();

    // These concern the last element that is still open.
    void setId(const QString& id);
    void setClasses(const QStringList& classes);
    /// How many points of the element may have a marker.
    void setPoints(double points);
    /// How many times larger the element draws its contents; a factor below 1 counts as 1.
    void multiplyScale(double scale);
    void addLink(const QString& link);
    void addDeclaration(const SvgStyle::Declaration& declaration);
    void addWork(double work);

    void addRules(const std::vector<SvgStyle::Rule>& rules);

    /// TooLarge for a document that would draw too much. Called once, after the last element has closed.
    Result<Done> check();

    /// How many times larger than its font a text of the document may be drawn, at most; 0 without text.
    /// Known after `check`.
    double textScale() const { return m_elements.empty() ? 0 : m_elements.front().cost.textScale; }

  private:
    using Indices = std::vector<int>;
    /// The patterns, gradients and markers that an element may be painted with, inherited ones among them:
    /// for fill, stroke, and the three markers.
    static constexpr std::size_t paintCount = 5;
    static constexpr std::size_t firstMarker = 2;
    using Paints = std::array<Indices, paintCount>;
    /// The cost of drawing an element and all that it refers to.
    struct Cost {
        double elements = 0;
        double layers = 0;
        double shapes = 0; ///< these are filled and stroked
        double points = 0; ///< these may have markers
        double textScale = 0;
        int depth = 0;
        int layerDepth = 0;

        /// Raises depths and text scale to those of `part`, which is drawn within.
        void contain(const Cost& part);
    };
    enum class State { New, Open, Done };
    struct Element {
        QString name;
        QString id;
        QStringList classes;
        QStringList links;
        std::vector<SvgStyle::Declaration> declarations;
        int parent = -1;
        Indices children;
        Indices targets;
        std::size_t paints = 0;
        double work = 1;
        double points = 0;
        double scale = 1;
        bool hasLayer = false;
        State state = State::New;
        bool isInCircle = false;
        Cost cost;
    };

    Element& last() { return m_elements[static_cast<std::size_t>(m_open.back())]; }
    void resolve(Element& element);
    void apply(const SvgStyle::Declaration& declaration, Element& element, Paints& paints) const;
    void addTarget(const QString& link, Indices& targets) const;
    void measureAll();
    void measure(int index);
    void measureWithin(Element& element);
    const Cost* visit(int index, bool isTarget);
    void meetAgain(int index);
    void addPaints(Element& element, const Cost& drawn);
    void refuse(const QString& sentence);

    std::vector<Element> m_elements;
    Indices m_open;
    QHash<QString, int> m_ids;
    QHash<QString, std::vector<SvgStyle::Declaration>> m_rules;
    double m_ruleCount = 0;
    std::vector<Paints> m_paints{Paints{}};
    double m_paintLinks = 0;
    Indices m_path;               ///< the elements being measured, each within the one before
    Indices m_targetPositions;    ///< the places in m_path of elements that others refer to
    std::optional<Error> m_error; ///< the first one
};
