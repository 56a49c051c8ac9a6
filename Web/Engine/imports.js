// What Engine/page.h asks for, led to the player's objects: Module.picture draws, Module.sound has the track,
// Module.director decides what is run when.
/* global LibraryManager, mergeInto, Module, Asyncify, UTF8ToString, stringToUTF8, HEAPU32, HEAPF32, HEAP16 */

mergeInto(LibraryManager.library, {
    $readList: function (place, Kind, size) {
        const [items, count, changedFrom, changedTo] = HEAPU32.subarray(place, place + 4);
        return {
            items: new Kind(HEAPU32.buffer, items, count * size),
            count,
            changedFrom,
            changedTo,
        };
    },

    pageShowFrame: function (frame) {
        return Asyncify.handleSleep((goOn) => Module.director.showFrame(frame, goOn));
    },
    pageEndShow: function (status) {
        Module.director.endShow(status);
    },

    pageSeedFor: function (asked) {
        return Module.director.seedFor(asked);
    },

    pageHeight: function () {
        return Module.picture.height;
    },
    pageCompile: function (ofVertices, text, log, size) {
        stringToUTF8(Module.picture.compile(ofVertices !== 0, UTF8ToString(text)), log, size);
    },
    pageMakeProgram: function (program, vertexText, pixelText, log, size) {
        const said = Module.picture.makeProgram(program, UTF8ToString(vertexText), UTF8ToString(pixelText));
        stringToUTF8(said, log, size);
    },
    pageSetUniform: function (program, name, value) {
        Module.picture.setUniform(program, UTF8ToString(name), value);
    },

    pageMakeTexture: function (texture) {
        Module.picture.makeTexture(texture);
    },
    pageSetTarget: function (texture) {
        Module.picture.setTarget(texture);
    },
    pageClear: function (r, g, b, a) {
        Module.picture.clear(r, g, b, a);
    },
    pageDraw__deps: ['$readList'],
    pageDraw: function (batch) {
        const at = batch >> 2;
        const [slot, program, blended, tested, projection, runs, runCount] = HEAPU32.subarray(at + 16, at + 23);
        Module.picture.draw({
            points: readList(at, Float32Array, 7),
            owners: readList(at + 4, Uint32Array, 1),
            matrices: readList(at + 8, Float32Array, 16),
            lines: readList(at + 12, Uint32Array, 1),
            slot,
            program,
            blended: blended !== 0,
            tested: tested !== 0,
            projection: HEAPF32.subarray(projection >> 2, (projection >> 2) + 16),
            runs: Array.from({ length: runCount }, (_, i) => ({
                count: HEAPU32[(runs >> 2) + 2 * i],
                width: HEAPF32[(runs >> 2) + 2 * i + 1],
            })),
        });
    },
    pageDrawQuad: function (program, texture, corners, projection, modelView, blended) {
        Module.picture.drawQuad({
            program,
            texture,
            corners: HEAPF32.subarray(corners >> 2, (corners >> 2) + 16),
            projection: HEAPF32.subarray(projection >> 2, (projection >> 2) + 16),
            modelView: HEAPF32.subarray(modelView >> 2, (modelView >> 2) + 16),
            blended: blended !== 0,
        });
    },

    pageTrackLength: function () {
        return Module.sound.length;
    },
    pageTrackRate: function () {
        return Module.sound.rate;
    },
    pageTrackStart: function () {
        return Module.director.trackStart();
    },
    pageTrackGain: function () {
        return Module.sound.gain;
    },
    pageCopyTrack: function (first, count, frames) {
        Module.sound.copy(first, count, HEAP16, frames >> 1);
    },
});
