#include "imaging/svg/SvgReferences.h"

#include <algorithm>
#include <cstddef>
#include <initializer_list>
#include <utility>

namespace {

bool isOneOf(const QString& name, std::initializer_list<const char*> names) {
    return std::ranges::any_of(names, [&](const char* other) { return name == QLatin1String(other); });
}

/// Whether an element is drawn only where another one refers to it.
bool isForReference(const QString& name) {
    return isOneOf(name, {"symbol", "pattern", "mask", "marker", "clipPath", "filter", "linearGradient",
                          "radialGradient"});
}

bool isNeverDrawn(const QString& name) {
    return isOneOf(name, {"defs", "style", "script", "title", "desc", "metadata"}) || isForReference(name);
}

bool isShape(const QString& name) {
    return isOneOf(name, {"path", "rect", "circle", "ellipse", "line", "polyline", "polygon", "text", "tspan",
                          "textPath", "tref"});
}

/// How long it takes to begin drawing an element of that name, measured in simple elements.
double ownWork(const QString& name) {
    if (name == QLatin1String("pattern"))
        return 10;
    if (name.startsWith(QLatin1String("fe")))
        return 25;
    return name == QLatin1String("stop") ? 0.125 : 1;
}

/// Whether an element with that property is drawn on a layer of its own.
bool needsLayer(const SvgStyle::Declaration& declaration) {
    if (isOneOf(declaration.property, {"mask", "filter", "clip-path"}))
        return declaration.value != QLatin1String("none");
    if (declaration.property == QLatin1String("opacity"))
        return declaration.value != QLatin1String("1");
    if (declaration.property == QLatin1String("mix-blend-mode"))
        return declaration.value != QLatin1String("normal");
    return declaration.property == QLatin1String("isolation") &&
           declaration.value == QLatin1String("isolate");
}

constexpr std::array paintProperties{"fill", "stroke", "marker-start", "marker-mid", "marker-end"};

bool setsPaint(const SvgStyle::Declaration& declaration, std::size_t paint) {
    constexpr std::size_t firstMarker = 2;
    return declaration.property == QLatin1String(paintProperties[paint]) ||
           (paint >= firstMarker && declaration.property == QLatin1String("marker"));
}

/// Whether a paint of that value certainly replaces the inherited one. A value that is not valid is passed
/// over.
bool isCertain(const QString& value) {
    const bool isColor = value.startsWith(u'#') && (value.size() == 4 || value.size() == 7);
    return value == QLatin1String("none") ||
           (isColor && std::all_of(value.begin() + 1, value.end(), [](QChar c) {
                return (c >= u'0' && c <= u'9') || (c.toLower() >= u'a' && c.toLower() <= u'f');
            }));
}

bool isKeyword(const QString& value) {
    return std::ranges::any_of(std::array{"inherit", "unset", "initial", "revert"}, [&](const char* keyword) {
        return value.contains(QLatin1String(keyword), Qt::CaseInsensitive);
    });
}

bool concerns(const SvgStyle::Declaration& declaration) {
    return isOneOf(declaration.property,
                   {"fill", "stroke", "marker", "marker-start", "marker-mid", "marker-end", "mask", "filter",
                    "clip-path", "opacity", "mix-blend-mode", "isolation"});
}

} // namespace

void SvgReferences::open(const QString& name, double work) {
    Element element;
    element.name = name;
    element.work = work + ownWork(name);
    const int index = static_cast<int>(m_elements.size());
    if (!m_open.empty()) {
        element.parent = m_open.back();
        last().children.push_back(index);
    }
    m_elements.push_back(std::move(element));
    m_open.push_back(index);
}

void SvgReferences::close() {
    m_open.pop_back();
}

void SvgReferences::setId(const QString& id) {
    last().id = id;
    if (!m_ids.contains(id))
        m_ids.insert(id, m_open.back());
}

void SvgReferences::setClasses(const QStringList& classes) {
    last().classes = classes;
}

void SvgReferences::setPoints(double points) {
    last().points = points;
}

void SvgReferences::multiplyScale(double scale) {
    last().scale *= std::max(1.0, scale);
}

void SvgReferences::addLink(const QString& link) {
    last().links << link;
}

void SvgReferences::addDeclaration(const SvgStyle::Declaration& declaration) {
    if (concerns(declaration))
        last().declarations.push_back(declaration);
}

void SvgReferences::addWork(double work) {
    last().work += work;
}

void SvgReferences::addRules(const std::vector<SvgStyle::Rule>& rules) {
    for (const SvgStyle::Rule& rule : rules) {
        ++m_ruleCount;
        for (const SvgStyle::Declaration& declaration : rule.declarations) {
            if (!concerns(declaration))
                continue;
            ++m_ruleCount;
            m_rules[rule.key].push_back(declaration);
        }
    }
}

void SvgReferences::addTarget(const QString& link, Indices& targets) const {
    const qsizetype fragment = link.lastIndexOf(u'#');
    if (fragment < 0)
        return;
    const auto found = m_ids.constFind(link.mid(fragment + 1));
    if (found != m_ids.constEnd())
        targets.push_back(*found);
}

void SvgReferences::apply(const SvgStyle::Declaration& declaration, Element& element, Paints& paints) const {
    element.hasLayer = element.hasLayer || needsLayer(declaration);
    if (isOneOf(declaration.property, {"mask", "filter", "clip-path"})) {
        for (const QString& url : declaration.urls)
            addTarget(url, element.targets);
    }
    for (std::size_t i = 0; i < paintCount; ++i) {
        // Of several links to paints only the first can be valid.
        if (setsPaint(declaration, i) && !declaration.urls.isEmpty())
            addTarget(declaration.urls.first(), paints[i]);
    }
}

void SvgReferences::resolve(Element& element) {
    std::vector<const SvgStyle::Declaration*> declarations;
    for (const SvgStyle::Declaration& declaration : element.declarations)
        declarations.push_back(&declaration);
    const std::size_t ownCount = declarations.size();
    QStringList keys{QString(), element.name};
    if (!element.id.isEmpty())
        keys << u'#' + element.id;
    for (const QString& name : element.classes)
        keys << u'.' + name;
    for (const QString& key : keys) {
        const auto rule = m_rules.constFind(key);
        if (rule == m_rules.constEnd())
            continue;
        for (const SvgStyle::Declaration& declaration : *rule)
            declarations.push_back(&declaration);
    }
    const std::size_t inherited =
        element.parent < 0 ? 0 : m_elements[static_cast<std::size_t>(element.parent)].paints;
    Paints paints = m_paints[inherited];
    for (std::size_t i = 0; i < paintCount; ++i) {
        const auto sets = [i](const SvgStyle::Declaration* declaration) {
            return setsPaint(*declaration, i);
        };
        const auto own = declarations.begin() + static_cast<std::ptrdiff_t>(ownCount);
        // A rule's selector may ask for more than is known here. Only the element's own declarations
        // certainly apply.
        const bool isReplaced = std::any_of(declarations.begin(), own, [&](const auto* declaration) {
            return sets(declaration) && isCertain(declaration->value);
        });
        const bool mayInherit = std::ranges::any_of(declarations, [&](const auto* declaration) {
            return sets(declaration) && isKeyword(declaration->value);
        });
        if (isReplaced && !mayInherit)
            paints[i].clear();
    }
    for (const SvgStyle::Declaration* declaration : declarations)
        apply(*declaration, element, paints);
    for (const QString& link : element.links)
        addTarget(link, element.targets);
    element.paints = inherited;
    if (paints == m_paints[inherited])
        return;
    if (paints != m_paints.back()) {
        for (const Indices& paint : paints)
            m_paintLinks += static_cast<double>(paint.size());
        m_paints.push_back(std::move(paints));
    }
    element.paints = m_paints.size() - 1;
}

void SvgReferences::refuse(const QString& sentence) {
    if (!m_error)
        m_error = Error{ErrorCode::TooLarge, sentence};
}

Result<Done> SvgReferences::check() {
    if (!m_elements.empty())
        measureAll();
    return m_error ? Result<Done>(*m_error) : Done{};
}

/// Refuses what would draw too much.
void SvgReferences::measureAll() {
    if (m_ruleCount * static_cast<double>(m_elements.size()) > maximumComparisons) {
        refuse(QStringLiteral("the SVG document has too many style rules for so many elements"));
        return;
    }
    // An element's parent comes before it.
    for (Element& element : m_elements) {
        resolve(element);
        if (m_paintLinks > maximumComparisons) {
            refuse(QStringLiteral("the SVG document has too many style rules for so many elements"));
            return;
        }
    }
    measure(0);
    if (m_error)
        return;
    const Cost& drawn = m_elements.front().cost;
    double ownElements = 0;
    double ownLayers = 0;
    for (const Element& element : m_elements) {
        ownElements += element.work;
        ownLayers += element.hasLayer ? 1 : 0;
    }
    constexpr double timesOwn = 4;
    if (drawn.elements > maximumElements + timesOwn * ownElements)
        refuse(
            QStringLiteral("the SVG document's elements are drawn too often by others that refer to them"));
    else if (drawn.layers > maximumLayers + timesOwn * ownLayers)
        refuse(
            QStringLiteral("the SVG document's masks, filters and opacities refer too often to each other"));
    else if (drawn.layerDepth > maximumLayerDepth)
        refuse(QStringLiteral("the SVG document's masks, filters and opacities are nested deeper than %1")
                   .arg(maximumLayerDepth));
}

/// Takes an element that is met again while it is being measured. A pattern, or another element that is drawn
/// only by reference, may refer to itself from within; it is drawn without that reference. Every other circle
/// is refused: there may be very many ways round it.
void SvgReferences::meetAgain(int index) {
    const Element& element = m_elements[static_cast<std::size_t>(index)];
    const bool isLastTarget =
        !m_targetPositions.empty() && m_path[static_cast<std::size_t>(m_targetPositions.back())] == index;
    if (!isLastTarget || !isForReference(element.name)) {
        refuse(QStringLiteral("the SVG document's elements refer to each other in a circle"));
        return;
    }
    for (auto i = static_cast<std::size_t>(m_targetPositions.back()) + 1; i < m_path.size(); ++i)
        m_elements[static_cast<std::size_t>(m_path[i])].isInCircle = true;
}

/// The cost of an element that is drawn within the one being measured. Null where it is not drawn.
const SvgReferences::Cost* SvgReferences::visit(int index, bool isTarget) {
    Element& element = m_elements[static_cast<std::size_t>(index)];
    if (m_error || (!isTarget && isNeverDrawn(element.name)))
        return nullptr;
    if (element.state == State::Open) {
        meetAgain(index);
        return nullptr;
    }
    if (isTarget)
        m_targetPositions.push_back(static_cast<int>(m_path.size()));
    if (element.state == State::New)
        measure(index);
    if (isTarget)
        m_targetPositions.pop_back();
    if (isTarget && element.isInCircle)
        refuse(QStringLiteral("the SVG document's elements refer to each other in a circle"));
    if (static_cast<int>(m_path.size()) + element.cost.depth > maximumDepth)
        refuse(QStringLiteral("the SVG document's elements and references are nested deeper than %1")
                   .arg(maximumDepth));
    return &element.cost;
}

void SvgReferences::measure(int index) {
    if (static_cast<int>(m_path.size()) >= maximumDepth) {
        refuse(QStringLiteral("the SVG document's elements and references are nested deeper than %1")
                   .arg(maximumDepth));
        return;
    }
    Element& element = m_elements[static_cast<std::size_t>(index)];
    element.state = State::Open;
    m_path.push_back(index);
    measureWithin(element);
    m_path.pop_back();
    element.state = State::Done;
}

void SvgReferences::Cost::contain(const Cost& part) {
    textScale = std::max(textScale, part.textScale);
    depth = std::max(depth, part.depth);
    layerDepth = std::max(layerDepth, part.layerDepth);
}

void SvgReferences::measureWithin(Element& element) {
    Cost& cost = element.cost;
    cost.elements = element.work;
    cost.layers = element.hasLayer ? 1 : 0;
    cost.shapes = isShape(element.name) ? 1 : 0;
    cost.points = element.points;
    Cost drawn; // the shapes that take their paints from this element
    const auto add = [&](int index, bool isTarget) {
        const Cost* part = visit(index, isTarget);
        if (part == nullptr)
            return;
        cost.elements += part->elements;
        cost.layers += part->layers;
        cost.shapes += part->shapes;
        cost.points += part->points;
        cost.contain(*part);
        if (isTarget) {
            drawn.shapes += part->shapes;
            drawn.points += part->points;
        }
    };
    for (const int child : element.children)
        add(child, false);
    for (const int target : element.targets)
        add(target, true);
    if (isShape(element.name)) {
        drawn.shapes += 1;
        drawn.points += element.points;
    }
    addPaints(element, drawn);
    if (element.name == QLatin1String("text"))
        cost.textScale = std::max(cost.textScale, 1.0);
    cost.textScale *= element.scale;
    cost.depth += 1;
    cost.layerDepth += element.hasLayer ? 1 : 0;
}

/// Adds the cost of filling, stroking and marking `drawn` with the element's paints.
void SvgReferences::addPaints(Element& element, const Cost& drawn) {
    if (drawn.shapes == 0)
        return;
    for (std::size_t i = 0; i < paintCount; ++i) {
        const double times = i >= firstMarker ? drawn.points : drawn.shapes;
        // A copy, so no pointer into m_paints is held while others are measured.
        const Indices targets = m_paints[element.paints][i];
        for (const int target : targets) {
            const Cost* paint = visit(target, true);
            if (paint == nullptr)
                continue;
            element.cost.elements += times * paint->elements;
            element.cost.layers += times * paint->layers;
            element.cost.contain(*paint);
        }
    }
}
