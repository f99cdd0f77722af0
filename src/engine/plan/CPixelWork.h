// SPDX-License-Identifier: MIT
#pragma once

/** What a surface asks for at each of its pixels. */
struct CPixelUse {
    int maps = 0;    ///< pictures that are looked up
    int passes = 1;  ///< how often it is drawn
    bool blends = false;
};

/** How long a software renderer is busy with the pixels of a picture, about, in nanoseconds of one processor of middling
 * speed: as if everything were drawn from back to front, so that nothing hides anything. */
class CPixelWork {
  public:
    void Add(double pixels, const CPixelUse& use);
    void Add(const CPixelWork& other);

    [[nodiscard]] double WithOneSample() const { return m_one; }
    [[nodiscard]] double WithSamples() const { return m_several; }
    /** How a picture of so many pixels and samples is to be drawn so that it ends in time: 0 as asked for, 1 with one
     * sample a pixel, else the number by which its sides are divided, a power of two up to kMostReduction, then with one
     * sample, too. */
    [[nodiscard]] int ReductionFor(double pixels, int samples) const;

    static constexpr int kMostReduction = 64;
    /** For a picture of up to kUsualPixels; a larger one may take longer in proportion. */
    static constexpr double kMostNs = 600e6;
    static constexpr double kUsualPixels = 1024 * 768;

  private:
    double m_one = 0, m_several = 0;
};
