// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// Runs block_distance on the features that MD dumped and writes the distances in MD's own layout,
// for a comparison with its hogmd_dist.txt. Arguments, each with a plus in front:
//   golden=FILE     features of all frames (hogmd_golden.txt), read
//   dist=FILE       distances, written
//   ref_frames=R    MD_RefFrmIdx: the reference is R frames back, the first frame until there is one
//   cell_8=, one_sided=, normalized=, scale=   as the unit's inputs of these names; 0, 0, 0 and 16
// The unit decides no activity: the active flag of every block is written as 0. A run with
// MD_HogDistAvailCheck 1 sets distances of still blocks to 0 later; the unit does not.
module block_distance_bench;
    localparam int MaxBlocks = 1 << 18;
    localparam int MaxReference = 14;

    typedef struct packed {
        logic [9:0][7:0] elements;
        logic [7:0]      length;
    } feature_t;

    // Ring of frames: the frame in hand is at frame % (ref_frames + 1).
    feature_t features[(MaxReference + 1) * MaxBlocks];
    logic [11:0] block_x[MaxBlocks], block_y[MaxBlocks];
    logic [7:0] distances[MaxBlocks];

    int ref_frames = 1;
    logic cell_8 = 0, one_sided = 0, normalized = 0;
    logic [8:0] scale = 16;
    string golden_path, dist_path;
    int golden_file, dist_file;

    logic clk = 0, reset = 1;
    logic in_valid = 0;
    feature_t cur, reference;
    logic out_valid;
    logic [7:0] out_distance;

    block_distance unit (
        .clk, .reset, .in_valid, .out_valid, .out_distance,
        .cell_8, .one_sided, .normalized, .scale,
        .cur_vector(cur.elements), .cur_length(cur.length),
        .ref_vector(reference.elements), .ref_length(reference.length));

    always #5 clk = !clk;

    // Distances come out in the order in which blocks went in.
    int received;
    always @(posedge clk) if (out_valid) begin
        distances[received] <= out_distance;
        received <= received + 1;
    end

    function automatic void fail(string what);
        $fatal(1, "%s", what);
    endfunction

    // Reads a frame's blocks into the ring at `slot`; returns how many. The next heading, or the end
    // of the file, is where no further block can be read.
    function automatic int read_blocks(int slot);
        int count = 0;
        logic [11:0] x, y;
        logic [7:0] luma, length, element;
        while ($fscanf(golden_file, " x:%h,y:%h", x, y) == 2) begin
            if (count == MaxBlocks) fail("a frame has too many blocks");
            if ($fscanf(golden_file, " nAvgY=%h MATRIX_MODE2:", luma) != 1) fail("a block has no luma");
            for (int i = 0; i < 10; i++) begin
                if ($fscanf(golden_file, " %h", element) != 1) fail("a vector is cut short");
                features[slot * MaxBlocks + count].elements[i] = element;
            end
            if ($fscanf(golden_file, " histNorm2=%h", length) != 1) fail("a block has no length class");
            features[slot * MaxBlocks + count].length = length;
            block_x[count] = x;
            block_y[count] = y;
            count++;
        end
        return count;
    endfunction

    task automatic run_frame(int slot, int ref_slot, int blocks);
        received = 0;
        for (int i = 0; i < blocks; i++) begin
            cur = features[slot * MaxBlocks + i];
            reference = features[ref_slot * MaxBlocks + i];
            in_valid = 1;
            @(negedge clk);
        end
        in_valid = 0;
        while (received < blocks) @(negedge clk);
    endtask

    task automatic write_frame(int frame_idx, int blocks);
        $fwrite(dist_file, "****************\nFrame_idx=%03d\n****************\n", frame_idx);
        for (int i = 0; i < blocks; i++) begin
            $fwrite(dist_file, "x:%h,y:%h\nhogDistAvail:0000,hogDis:00%h\n", block_x[i], block_y[i],
                    distances[i]);
        end
    endtask

    initial begin
        int frame_idx, blocks, slot, ref_slot;
        if (!$value$plusargs("golden=%s", golden_path)) fail("golden=FILE is missing");
        if (!$value$plusargs("dist=%s", dist_path)) fail("dist=FILE is missing");
        void'($value$plusargs("ref_frames=%d", ref_frames));
        void'($value$plusargs("cell_8=%d", cell_8));
        void'($value$plusargs("one_sided=%d", one_sided));
        void'($value$plusargs("normalized=%d", normalized));
        void'($value$plusargs("scale=%d", scale));
        if (ref_frames < 0 || ref_frames > MaxReference) fail("ref_frames is 0 to 14");
        golden_file = $fopen(golden_path, "r");
        if (golden_file == 0) fail({golden_path, ": cannot be read"});
        dist_file = $fopen(dist_path, "w");
        if (dist_file == 0) fail({dist_path, ": cannot be written"});

        repeat (2) @(negedge clk);
        reset = 0;
        for (int frame = 0;
             $fscanf(golden_file, " **************** Frame_idx=%d ****************", frame_idx) == 1;
             frame++) begin
            slot = frame % (ref_frames + 1);
            ref_slot = frame < ref_frames ? 0 : (frame + 1) % (ref_frames + 1);
            blocks = read_blocks(slot);
            run_frame(slot, ref_slot, blocks);
            write_frame(frame_idx, blocks);
        end
        if (!$feof(golden_file)) fail("the feature file holds something else than frames");
        $fclose(golden_file);
        $fclose(dist_file);
        $finish;
    end
endmodule
