// Gaussian objects and containers: ownership, order, motions, and what they are made from.
#include "vxgrid/gaussian/containers.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "support/models.h"
#include "vxgrid/grid/scalar_grid.h"
#include "vxgrid/toolkit/names.h"

namespace {

using namespace VXCore;
using vxgrid_test::make_model;
using vxgrid_test::ModelAtom;

/// A host's own Gaussian, which counts how many of its kind are alive.
class HostGaussian : public VXGaussian {
 public:
  explicit HostGaussian(int& alive) : alive_(&alive) { ++*alive_; }
  HostGaussian(const HostGaussian& other) : VXGaussian(other), alive_(other.alive_) { ++*alive_; }
  HostGaussian& operator=(const HostGaussian&) = delete;
  ~HostGaussian() override { --*alive_; }
  VXBase* CreateCopy() const override { return new HostGaussian(*this); }
  unsigned int GetColor() const override { return 0xABCDEF; }

 private:
  int* alive_;
};

VXGaussianContainer numbered(unsigned int n) {
  VXGaussianContainer c;
  for (unsigned int i = 0; i < n; ++i) {
    const auto f = static_cast<float>(i);
    c.AddGaussian(VXGaussian(2.7f + f, 0.8f + f, f, 10 + f, 20 + f, i));
  }
  return c;
}

std::vector<unsigned int> colors(const VXGaussianContainerBase& c) {
  std::vector<unsigned int> all(c.NumGaussians());
  c.GetColors(all.data());
  return all;
}

using Colors = std::vector<unsigned int>;

TEST(Gaussians, fields_copies_and_types_are_as_they_were_set) {
  EXPECT_EQ(VXGaussian(1, 1, nullptr, 0).GetZ(), 0.0f);
  float centre[3] = {1, 2, 3};
  VXGaussian g(2.7f, 0.5f, centre, 7);
  g.SetCenter(nullptr);
  g.SetY(5);
  g.SetStringData("name", "first");
  const VXGaussianBase& base = g;
  VXGaussian copy(base), assigned;
  assigned = base;
  for (const VXGaussian* other : {&copy, &assigned}) {
    float out[3] = {};
    other->GetCenter(out);
    EXPECT_EQ(out[0], 1.0f);
    EXPECT_EQ(out[1], 5.0f);
    EXPECT_EQ(out[2], 3.0f);
    EXPECT_EQ(other->GetPrefactor(), 2.7f);
    EXPECT_EQ(other->GetWidth(), 0.5f);
    EXPECT_EQ(other->GetColor(), 7u);
    EXPECT_EQ(other->GetStringData("name"), "first");
  }
  const VXGaussianContainer container;
  EXPECT_TRUE(g.IsDataType(g.GetDataType()));
  EXPECT_TRUE(g.IsDataType(VXBase().GetDataType()));
  EXPECT_FALSE(g.IsDataType(container.GetDataType()));
  EXPECT_TRUE(container.IsDataType(container.GetDataType()));
  g.Clear();
  EXPECT_EQ(g.GetWidth(), 0.0f);
  EXPECT_FALSE(g.HasData("name"));
  EXPECT_NEAR(VXGetRadius(VXGaussian(2.7f, 0.811159f, nullptr, 0)), 1.7, 1e-4);
  EXPECT_DOUBLE_EQ(VXGetKappa(copy), VXGetKappa(double{2.7f}));
}

TEST(Gaussians, a_container_owns_copies_in_order) {
  int alive = 0;
  {
    VXGaussianContainer c = numbered(2);
    HostGaussian host(alive);
    EXPECT_TRUE(c.AddGaussian(host));
    EXPECT_EQ(alive, 2);
    EXPECT_EQ(colors(c), (Colors{0, 1, 0xABCDEF}));
    const VXGaussianContainer copy = c;
    const std::unique_ptr<VXBase> clone(c.CreateCopy());
    EXPECT_EQ(alive, 4);
    c.DeleteGaussians();
    EXPECT_EQ(alive, 3);
    EXPECT_EQ(colors(copy), (Colors{0, 1, 0xABCDEF}));
    EXPECT_EQ(static_cast<VXGaussianContainer&>(*clone).NumGaussians(), 3u);
  }
  EXPECT_EQ(alive, 0);

  VXGaussianContainer from = numbered(3);
  VXGaussianContainer to = std::move(from);
  EXPECT_EQ(to.NumGaussians(), 3u);
  EXPECT_EQ(from.NumGaussians(), 0u);  // NOLINT: empty, and of further use
  EXPECT_TRUE(from.AddGaussian(VXGaussian()));
  to.SetIntData("tag", 4);
  to.Clear();
  EXPECT_EQ(to.NumGaussians(), 0u);
  EXPECT_FALSE(to.HasData("tag"));
}

TEST(Gaussians, deleting_goes_by_identity_and_keeps_the_order) {
  VXGaussianContainer c = numbered(4), other = numbered(4);
  VXIter<VXGaussianBase> second(c.GetGaussians()), foreign(other.GetGaussians());
  ++second;
  EXPECT_FALSE(c.DeleteGaussian(foreign.Target()));
  EXPECT_FALSE(c.DeleteGaussian(nullptr));
  EXPECT_EQ(colors(c), (Colors{0, 1, 2, 3}));
  EXPECT_TRUE(c.DeleteGaussian(second.Target()));
  EXPECT_EQ(colors(c), (Colors{0, 2, 3}));
}

TEST(Gaussians, arrays_and_walks_run_in_order) {
  VXGaussianContainer c = numbered(3);
  std::vector<double> coords(9), widths(3), prefactors(3);
  std::vector<float> single(9);
  c.GetCoords(coords.data());
  c.GetWidths(widths.data());
  c.GetPrefactors(prefactors.data());
  c.GetCoords(single.data());
  EXPECT_EQ(coords, (std::vector<double>{0, 10, 20, 1, 11, 21, 2, 12, 22}));
  EXPECT_EQ(single, std::vector<float>(coords.begin(), coords.end()));
  EXPECT_EQ(widths[2], double{0.8f + 2});
  EXPECT_EQ(prefactors[1], double{2.7f + 1});
  for (VXGaussianBase& g : VXIter<VXGaussianBase>(c.GetGaussians()))
    g.SetColor(g.GetColor() + 5);
  EXPECT_EQ(colors(c), (Colors{5, 6, 7}));
}

TEST(Gaussians, motions_move_centres_alone) {
  VXGaussianContainer c = numbered(3), none;
  const float turn[9] = {0, -1, 0, 1, 0, 0, 0, 0, 1};  // x to y
  const float shift[3] = {100, 0, -20};
  VXRotate(c, turn);
  VXTranslate(c, shift);
  VXRotate(none, turn);
  VXTranslate(none, shift);
  std::vector<float> coords(9), widths(3);
  c.GetCoords(coords.data());
  c.GetWidths(widths.data());
  EXPECT_EQ(coords, (std::vector<float>{90, 0, 0, 89, 1, 1, 88, 2, 2}));
  EXPECT_EQ(widths, (std::vector<float>{0.8f, 1.8f, 2.8f}));
}

TEST(Gaussians, atoms_become_gaussians_of_their_volume) {
  VXGraphMol mol = make_model(std::array<ModelAtom, 2>{{{6, 1, 2, 3}, {8, 4, 5, 6}}});
  VXGaussianContainer c;
  EXPECT_FALSE(VXMakeGaussians(c, VXGraphMol(), 2.7));
  EXPECT_TRUE(VXMakeGaussians(c, mol, 2.7));  // Bondi's radii, 1.70 and 1.52
  mol.GetAtom(1)->SetRadius(2.0f);
  EXPECT_TRUE(VXMakeGaussians(c, mol, 3.5));
  ASSERT_EQ(c.NumGaussians(), 4u);
  const float radii[] = {1.7f, 1.52f, 0.0f, 2.0f};
  std::size_t i = 0;
  for (const VXGaussianBase& g : VXIter<VXGaussianBase>(c.GetGaussians())) {
    if (i == 2) {
      EXPECT_EQ(g.GetWidth(), 0.0f);
    } else {
      EXPECT_NEAR(g.GetPrefactor() * std::pow(M_PI / g.GetWidth(), 1.5),
                  4 * M_PI / 3 * std::pow(radii[i], 3), 1e-4);
    }
    EXPECT_EQ(g.GetX(), i % 2 ? 4.0f : 1.0f);
    EXPECT_EQ(g.GetColor(), 0u);
    ++i;
  }
}

TEST(Gaussians, a_grid_of_a_container_has_its_sum) {
  VXGaussianContainer c;
  VXScalarGrid grid(2, 2, 2, 0, 0, 0, 1.0f, "before");
  EXPECT_FALSE(VXMakeGaussianRepGrid(grid, c, 0.5f));
  c.AddGaussian(VXGaussian(2.7f, 0.8f, 1, 2, 3, 0));
  c.AddGaussian(VXGaussian(1.5f, 0.6f, 2, 2, 3, 0));
  EXPECT_FALSE(VXMakeGaussianRepGrid(grid, c, 0.0f));
  EXPECT_EQ(grid.GetXDim(), 2u);
  ASSERT_TRUE(VXMakeGaussianRepGrid(grid, c, 0.25f));
  EXPECT_EQ(grid.GetSpacing(), 0.25f);
  double total = 0;
  for (unsigned int e = 0; e < grid.GetSize(); ++e)
    total += grid.GetValues()[e] * std::pow(0.25, 3);
  const double volume = 2.7 * std::pow(M_PI / 0.8, 1.5) + 1.5 * std::pow(M_PI / 0.6, 1.5);
  EXPECT_NEAR(total, volume, 0.01 * volume);
}

}  // namespace
