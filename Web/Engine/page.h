#pragma once

#include <cstdint>

/// What the page does for the show, in JavaScript: imports.js leads these to the player's modules.
extern "C" {

/// The frame of that number is complete. Comes back when the next one is to be run, which may be much later,
/// and may be in another frame than it was called from: the player goes back and forth in time by putting the
/// memory of another moment in place of this one. Answers whether the next frame is to be drawn.
int pageShowFrame(unsigned int frame);
/// The show is over and has this exit status.
void pageEndShow(int status);

/// What the show's chance starts from, in place of the seed that was asked for.
unsigned int pageSeedFor(unsigned int asked);

/// Of the picture, in pixels.
unsigned int pageHeight();

/// Compiles a shader, of the vertices or of the pixels, and writes its log: empty if it compiled.
void pageCompile(int ofVertices, const char* text, char* log, int size);
/// Makes a program of two texts under a number of our choice; writes its log: empty if it linked.
void pageMakeProgram(unsigned int program, const char* vertexText, const char* pixelText, char* log,
                     int size);
/// A uniform of a program from now on, of the next batch it draws too.
void pageSetUniform(unsigned int program, const char* name, float value);

/// Makes a texture of the canvas's size to draw into, under a number of our choice.
void pageMakeTexture(unsigned int texture);
/// Everything is drawn into this texture, or for 0 to the canvas.
void pageSetTarget(unsigned int texture);
/// Clears the target, and its depth.
void pageClear(float r, float g, float b, float a);

/// What a batch of points or lines consists of. The page keeps the lists of each slot, and is told what has
/// changed of them since.
struct PageList {
    const void* items;
    std::uint32_t count;
    std::uint32_t changedFrom; ///< items; everything before is as it was,
    std::uint32_t changedTo;   ///< and everything from here on
};
/// Neighbours in the lists of points or lines that are drawn in the same width.
struct PageRun {
    std::uint32_t count;
    float width; ///< pixels
};
struct PageBatch {
    PageList points;   ///< seven floats each: position and colour
    PageList owners;   ///< for each point, the number of its model-view matrix
    PageList matrices; ///< model-view, sixteen floats each
    PageList lines;    ///< for each line its two points; none if points are to be drawn
    std::uint32_t slot;
    std::uint32_t program;
    std::uint32_t blended; ///< whether light is added to what is there, by its alpha, ...
    std::uint32_t tested;  ///< ... and whether what is nearer hides it
    const float* projection;
    const PageRun* runs;
    std::uint32_t runCount;
};
void pageDraw(const PageBatch* batch);

/// Four corners, each a position and texture coordinates, and the texture on them.
void pageDrawQuad(unsigned int program, unsigned int texture, const float* corners, const float* projection,
                  const float* modelView, int blended);

/// The track: its length and rate in sound frames, 0 if there is none; the ms of it at which the show begins;
/// what makes it as loud as the show is used to; and the left side of a stretch of it, silence where it has
/// no frames, each with two bytes free behind it for the right.
unsigned int pageTrackLength();
unsigned int pageTrackRate();
unsigned int pageTrackStart();
float pageTrackGain();
void pageCopyTrack(int first, unsigned int count, std::int16_t* frames);
}
