// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// Distance of a block from its reference, 0 to 255: how far apart their vectors lie, weighed by
// their length classes. A block enters at each clock where `in_valid` is high; its distance leaves
// three clocks later.
module block_distance (
    input logic clk,
    input logic reset,

    // Settings, constant while blocks are under way.
    input logic       cell_8,      // 1 for MD_HogCellSize 8, 0 for 16
    input logic       one_sided,   // MD_HogDist_WeightMethod
    input logic       normalized,  // 1 for MD_HogNormalizeMode other than 0
    input logic [8:0] scale,       // MD_HogDist_Scale2

    // Feature records of the block and of its reference.
    input logic            in_valid,
    input logic [9:0][7:0] cur_vector,
    input logic [9:0][7:0] ref_vector,
    input logic [7:0]      cur_length,  // length class, 1 to 255
    input logic [7:0]      ref_length,

    output logic       out_valid,
    output logic [7:0] out_distance
);
    // Ten squares of at most 255 * 255 need 20 bits.
    logic [19:0] squares;
    always_comb begin
        squares = '0;
        for (int i = 0; i < 10; i++) begin
            automatic logic signed [9:0] difference =
                $signed({2'b00, cur_vector[i]}) - $signed({2'b00, ref_vector[i]});
            automatic logic signed [19:0] wide = 20'(difference);
            squares += 20'(wide * wide);
        end
    end

    // A length below the reference's adds to the weight too, unless that is one-sided: at most 509.
    logic [8:0] weight;
    always_comb begin
        weight = 9'(cur_length);
        if (cur_length >= ref_length) weight += 9'(cur_length - ref_length);
        else if (!one_sided) weight += 9'(ref_length - cur_length);
    end

    // First clock: the sum of squares after its shift, at most 40640, and the weight.
    logic        sum_valid;
    logic [15:0] sum;
    logic [8:0]  sum_weight;
    // Second clock: the scaled product. It keeps 32 bits and counts as signed.
    logic               product_valid;
    logic signed [31:0] product;

    logic signed [31:0] shifted;
    assign shifted = normalized ? product >>> 12 : product >>> 4;

    always_ff @(posedge clk) begin
        sum_valid <= in_valid && !reset;
        sum <= cell_8 ? 16'(squares >> 6) : 16'(squares >> 4);
        sum_weight <= weight;

        product_valid <= sum_valid && !reset;
        product <= 32'(sum) * 32'(sum_weight) * 32'(scale);

        out_valid <= product_valid && !reset;
`ifdef FAULT_NO_SATURATION
        out_distance <= shifted[7:0];
`else
        out_distance <= shifted > 255 ? 8'd255 : shifted[7:0];
`endif
    end
endmodule
