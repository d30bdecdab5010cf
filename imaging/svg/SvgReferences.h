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

/// What a document's elements refer to, to tell before anything is drawn how much a drawing of it draws: a
/// few elements that refer to each other may stand for billions.
///
/// Whatever is not certain counts as drawn, so that the true numbers are never larger.
class SvgReferences {
  public:
    /// How many simple elements, beyond four for each that the document has, may be drawn because others
    /// refer to them.
    static constexpr double maximumElements = 100000;
    /// Likewise of layers: what masks, filters and opacities are drawn on.
    static constexpr double maximumLayers = 500;
    /// How deep layers may be nested.
    static constexpr int maximumLayerDepth = 64;
    /// How deep elements and references may be nested: the drawing library calls itself for each.
    static constexpr int maximumDepth = 400;
    /// How many times a rule of a style sheet may be compared with an element.
    static constexpr double maximumComparisons = 10e6;

    /// An element opens, within the last one that is open. `work` tells how many simple elements take as long
    /// to draw as this one alone.
    void open(const QString& name, double work);
    void close();

    // Of the element that opened last and is still open:
    void setId(const QString& id);
    void setClasses(const QStringList& classes);
    /// How many points it has that a marker may stand on.
    void setPoints(double points);
    /// How much larger it draws what is in it.
    void multiplyScale(double scale);
    void addLink(const QString& link);
    void addDeclaration(const SvgStyle::Declaration& declaration);
    void addWork(double work);

    void addRules(const std::vector<SvgStyle::Rule>& rules);

    /// The error for a document that would draw too much. To be asked once, when all of it is there.
    std::optional<Error> refused();

    /// How many times larger than its font some text of the document may be drawn; 0 without text. After
    /// `refused`.
    double textScale() const { return m_elements.empty() ? 0 : m_elements.front().cost.textScale; }

  private:
    using Indices = std::vector<int>;
    /// The patterns, gradients and markers that an element has from those around it: fill, stroke, and the
    /// three markers.
    static constexpr std::size_t paintCount = 5;
    static constexpr std::size_t firstMarker = 2;
    using Paints = std::array<Indices, paintCount>;
    /// What drawing an element and all that it refers to takes.
    struct Cost {
        double elements = 0;
        double layers = 0;
        double shapes = 0; ///< what is filled and stroked
        double points = 0; ///< what markers stand on
        double textScale = 0;
        int depth = 0;
        int layerDepth = 0;

        /// Takes in how deep and how large something is that is drawn within.
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
    Indices m_path;            ///< what is being measured, each within the one before
    Indices m_targetPositions; ///< where in it the targets are
    std::optional<Error> m_error;
};
