#pragma once

/// How much processor time the drawings of a document may take, in seconds.
struct SvgTimeLimit {
    double seconds = 10;
    /// False: all drawings of the document together. True: each of them, counted anew. A request that is open
    /// counts instead of both.
    bool isForEachDrawing = false;
};

/// What drawings that count together have taken so far, in seconds.
struct SvgCount {
    double limit = 0;
    double processorTime = 0;
    double waitingTime = 0; ///< for workers that did nothing
};

/// While it lives, the drawings of all documents count together, and their limit is this request's. One
/// within another does nothing. For the main thread.
class SvgRequest : public SvgCount {
  public:
    explicit SvgRequest(double seconds) : SvgCount{seconds} {
        if (m_open == nullptr)
            m_open = this;
    }
    ~SvgRequest() {
        if (m_open == this)
            m_open = nullptr;
    }
    SvgRequest(const SvgRequest&) = delete;
    SvgRequest& operator=(const SvgRequest&) = delete;

    /// The one that is open, or null.
    static SvgRequest* open() { return m_open; }

  private:
    static inline SvgRequest* m_open = nullptr;
};

/// The limits in the window: for a drop, a repaint or one step of the previews, and for one generation.
inline constexpr SvgTimeLimit svgTimeInWindow{3, true};
inline constexpr double svgSecondsOfGeneration = 10;
