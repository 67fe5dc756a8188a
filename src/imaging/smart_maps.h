#pragma once

#include <opencv2/core/mat.hpp>

/// What the search for sheets looks at: colours and edges of a picture of a few hundred pixels.
struct SmartMaps
{
    cv::Mat_<cv::Vec3b> lab;  ///< colours, slightly smoothed
    cv::Mat_<cv::Vec2f> edge; ///< colour gradient; its length is pressed into 0 to 1
    cv::Mat_<float> straight; ///< 0 to 1: how far the gradients around a pixel agree in direction
    float halfLevel = 0;      ///< gradient in levels per pixel whose pressed length is 0.5

    cv::Size size() const { return lab.size(); }
};

/// `rgb`: 8 bits, R,G,B, both sides 16 or more. The gradient at a pixel is that of the channel in
/// which it is longest, as in S. Di Zenzo, "A note on the gradient of a multi-image" (1986), in the
/// simpler form that takes the strongest channel.
SmartMaps smartMaps(const cv::Mat &rgb);
