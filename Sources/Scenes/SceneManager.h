#pragma once

#include "3D/LineRenderer.h"
#include "Scenes/Scene.h"

#include <cstdint>
#include <vector>

/// Plays scenes one after another over the one grid of the show. Needs a scene to draw or update, and is done
/// with once update has answered true.
class SceneManager {
public:
    SceneManager();
    ~SceneManager();
    SceneManager(const SceneManager&) = delete;
    SceneManager& operator=(const SceneManager&) = delete;

    /// Takes the scene over: the manager deletes it.
    void addScene(Scene* pScene);

    /// Draws the current scene: its view, the grid, its objects.
    void draw(Window* pWindow);
    /// Advances the current scene; once it has finished the next one is current. True when the last has
    /// finished. time: ms on the engine clock.
    bool update(const Camera& camera, Music* pMusic, unsigned int time);

    Scene* getCurrentScene() const;

private:
    std::vector<Scene*> scenes;
    std::uint32_t currentScene = 0;
    Grid grid;
    LineRenderer lr; ///< the grid as it is drawn
};
