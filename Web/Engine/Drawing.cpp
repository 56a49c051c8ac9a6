#include "Drawing.h"

namespace web {

void Drawing::clear(float r, float g, float b, float a) {
    flush();
    next = 0;
    if (on) {
        pageClear(r, g, b, a);
    }
}

void Drawing::setTarget(std::uint32_t texture) {
    flush();
    if (on) {
        pageSetTarget(texture);
    }
}

void Drawing::addLines(const Vertices& vertices, const std::uint32_t* indices, std::size_t count,
                       float width) {
    if (!on || count == 0) {
        return;
    }
    Batch& batch = open(true);
    const auto base = static_cast<std::uint32_t>(batch.points.size());
    addVertices(batch, vertices, *std::max_element(indices, indices + count) + 1);
    numbers.resize(count);
    std::transform(indices, indices + count, numbers.begin(), [=](std::uint32_t i) { return base + i; });
    batch.lines.add(numbers.data(), count);
    addRun(batch, count / 2, width);
}

void Drawing::addPoints(const Vertices& vertices, std::size_t count, float size) {
    if (!on || count == 0) {
        return;
    }
    Batch& batch = open(false);
    addVertices(batch, vertices, count);
    addRun(batch, count, size);
}

void Drawing::drawQuad(std::uint32_t texture, const float* corners) {
    flush();
    if (on) {
        pageDrawQuad(program, texture, corners, &projection[0][0], &modelView[0][0], blended ? 1 : 0);
    }
}

void Drawing::flush() {
    if (gathering == nullptr) {
        return;
    }
    Batch& batch = *gathering;
    gathering = nullptr;
    const PageBatch sent{batch.points.send(),
                         batch.owners.send(),
                         batch.matrices.send(),
                         batch.lines.send(),
                         static_cast<std::uint32_t>(next - 1),
                         program,
                         blended ? 1U : 0U,
                         tested ? 1U : 0U,
                         &projection[0][0],
                         batch.runs.data(),
                         static_cast<std::uint32_t>(batch.runs.size())};
    pageDraw(&sent);
}

void Drawing::forget() {
    for (const auto& batch : batches) {
        batch->points.forget();
        batch->owners.forget();
        batch->matrices.forget();
        batch->lines.forget();
    }
}

Drawing::Batch& Drawing::open(bool ofLines) {
    if (gathering != nullptr && gathering->ofLines == ofLines) {
        return *gathering;
    }
    flush();
    if (next == batches.size()) {
        batches.push_back(std::make_unique<Batch>());
    }
    gathering = batches[next].get();
    ++next;
    gathering->points.rewrite();
    gathering->owners.rewrite();
    gathering->matrices.rewrite();
    gathering->lines.rewrite();
    gathering->runs.clear();
    gathering->ofLines = ofLines;
    return *gathering;
}

void Drawing::addVertices(Batch& batch, const Vertices& vertices, std::size_t count) {
    if (batch.matrices.size() == 0 || batch.matrices.back() != modelView) {
        batch.matrices.add(modelView);
    }
    numbers.assign(count, static_cast<std::uint32_t>(batch.matrices.size() - 1));
    batch.owners.add(numbers.data(), count);
    if (vertices.stride == sizeof(Vertex)) {
        batch.points.add(static_cast<const Vertex*>(vertices.first), count);
        return;
    }
    packed.resize(count);
    const auto* place = static_cast<const char*>(vertices.first);
    for (Vertex& vertex : packed) {
        std::memcpy(&vertex, place, sizeof vertex);
        place += vertices.stride;
    }
    batch.points.add(packed.data(), count);
}

void Drawing::addRun(Batch& batch, std::size_t count, float width) {
    if (batch.runs.empty() || batch.runs.back().width != width) {
        batch.runs.push_back({0, width});
    }
    batch.runs.back().count += static_cast<std::uint32_t>(count);
}

} // namespace web
